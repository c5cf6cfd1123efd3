// A library to be preloaded under a program: it counts the calls of one kind that the program makes from the beginning
// of main on, and lets the n-th of them fail as the system would. It is told so by
//
//   NGREX_FAULT=KIND:N    one call fails; KIND:N+ lets all calls from the n-th on fail
//                         (barren: as memory, and there is none set aside for exceptions either)
//   NGREX_FAULT_NOTE=FILE an existing file, to which it adds a byte when the first call fails
//
// Everything passes through to the C library by its own entry points or by bare system calls, so that the library
// itself makes no call that it counts.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* old, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
}

namespace {

enum Kind {
  none,
  memory,
  map,
  open_file,
  read_bytes,
  write_bytes,
  close_file,
  sync_file,
  seek,
  interrupt,
  piecemeal,
  barren
};

constexpr const char* names[] = {"",      "memory", "map",  "open",      "read",      "write",
                                 "close", "sync",   "seek", "interrupt", "piecemeal", "barren"};

Kind wanted = none;
unsigned long fatal_call = 0;
bool onwards = false;
unsigned long calls = 0;

void note_failure() {
  const char* const path = std::getenv("NGREX_FAULT_NOTE");
  const long note = syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_APPEND, 0);
  syscall(SYS_write, note, "x", 1);
  syscall(SYS_close, note);
}

// Counts a call of a kind and tells whether it has to fail; errno is set then.
bool must_fail(Kind kind, int reason) {
  if (kind != wanted) return false;
  ++calls;
  if (onwards ? calls < fatal_call : calls != fatal_call) return false;
  if (calls == fatal_call) note_failure();
  errno = reason;
  return true;
}

template <typename Function>
Function next_of(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

void arm() {
  const char* const order = std::getenv("NGREX_FAULT");
  if (order == nullptr) return;
  const char* const colon = std::strchr(order, ':');
  char* end = nullptr;
  fatal_call = std::strtoul(colon + 1, &end, 10);
  onwards = *end == '+';
  for (int kind = memory; kind <= barren; ++kind)
    if (std::string_view(order, static_cast<std::size_t>(colon - order)) == names[kind])
      wanted = static_cast<Kind>(kind);
  if (wanted == none) std::abort();
  if (wanted == barren) wanted = memory;
}

using Main = int (*)(int, char**, char**);
Main program_main = nullptr;

int main_with_faults(int argc, char** argv, char** environment) {
  arm();
  return program_main(argc, argv, environment);
}

int mode_of(int flags, va_list arguments) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, int) : 0;
}

ssize_t result_of(long value) {
  return static_cast<ssize_t>(value);
}

}  // namespace

extern "C" {

int __libc_start_main(Main main, int argc, char** argv, void (*init)(), void (*fini)(), void (*loader_fini)(),
                      void* stack_end) {
  program_main = main;
  using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);
  return next_of<Start>("__libc_start_main")(main_with_faults, argc, argv, init, fini, loader_fini, stack_end);
}

// What the C++ library sets aside for exceptions in time of need it takes before main, as the only large piece.
void* malloc(size_t size) noexcept {
  if (program_main == nullptr && size >= (size_t{1} << 16)) {
    const char* const order = std::getenv("NGREX_FAULT");
    if (order != nullptr && std::string_view(order).starts_with(names[barren])) return nullptr;
  }
  return must_fail(memory, ENOMEM) ? nullptr : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) noexcept {
  return must_fail(memory, ENOMEM) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* old, size_t size) noexcept {
  return must_fail(memory, ENOMEM) ? nullptr : __libc_realloc(old, size);
}

void* memalign(size_t alignment, size_t size) noexcept {
  return must_fail(memory, ENOMEM) ? nullptr : __libc_memalign(alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size) noexcept {
  return memalign(alignment, size);
}

int posix_memalign(void** result, size_t alignment, size_t size) noexcept {
  void* const taken = memalign(alignment, size);
  if (taken == nullptr) return ENOMEM;
  *result = taken;
  return 0;
}

void* mmap(void* address, size_t length, int protection, int flags, int descriptor, off_t offset) noexcept {
  if (must_fail(map, ENOMEM)) return MAP_FAILED;
  return reinterpret_cast<void*>(syscall(SYS_mmap, address, length, protection, flags, descriptor, offset));
}

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const int mode = mode_of(flags, arguments);
  va_end(arguments);
  if (must_fail(open_file, EMFILE)) return -1;
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const int mode = mode_of(flags, arguments);
  va_end(arguments);
  if (must_fail(open_file, EMFILE)) return -1;
  return static_cast<int>(syscall(SYS_openat, folder, path, flags, mode));
}

FILE* fopen(const char* path, const char* mode) {
  if (must_fail(open_file, EMFILE)) return nullptr;
  return next_of<FILE* (*)(const char*, const char*)>("fopen")(path, mode);
}

int mkostemp(char* pattern, int flags) {
  if (must_fail(open_file, EMFILE)) return -1;
  return next_of<int (*)(char*, int)>("mkostemp")(pattern, flags);
}

// "piecemeal" gives a read or a write one byte only, which is no failure.
ssize_t read(int descriptor, void* to, size_t size) {
  if (must_fail(read_bytes, EIO) || must_fail(interrupt, EINTR)) return -1;
  if (size > 1 && must_fail(piecemeal, 0)) size = 1;
  return result_of(syscall(SYS_read, descriptor, to, size));
}

ssize_t write(int descriptor, const void* from, size_t size) {
  if (must_fail(write_bytes, ENOSPC) || must_fail(interrupt, EINTR)) return -1;
  if (size > 1 && must_fail(piecemeal, 0)) size = 1;
  return result_of(syscall(SYS_write, descriptor, from, size));
}

ssize_t writev(int descriptor, const iovec* pieces, int count) {
  if (must_fail(write_bytes, ENOSPC) || must_fail(interrupt, EINTR)) return -1;
  if (count > 1 && must_fail(piecemeal, 0)) count = 1;
  return result_of(syscall(SYS_writev, descriptor, pieces, count));
}

// The file is closed all the same, as it is when the system reports so late that bytes were lost.
int close(int descriptor) {
  const bool fails = must_fail(close_file, EIO);
  const long result = syscall(SYS_close, descriptor);
  if (fails) errno = EIO;
  return fails ? -1 : static_cast<int>(result);
}

int fclose(FILE* file) {
  const bool fails = must_fail(close_file, EIO);
  const int result = next_of<int (*)(FILE*)>("fclose")(file);
  if (fails) errno = EIO;
  return fails ? EOF : result;
}

int fsync(int descriptor) {
  return must_fail(sync_file, EIO) ? -1 : static_cast<int>(syscall(SYS_fsync, descriptor));
}

int fdatasync(int descriptor) {
  return must_fail(sync_file, EIO) ? -1 : static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

off_t lseek(int descriptor, off_t offset, int origin) noexcept {
  return must_fail(seek, EIO) ? -1 : syscall(SYS_lseek, descriptor, offset, origin);
}

// The names under which programs that ask for large files call the same.
[[gnu::alias("mmap")]] void* mmap64(void*, size_t, int, int, int, off_t) noexcept;
[[gnu::alias("open")]] int open64(const char*, int, ...);
[[gnu::alias("openat")]] int openat64(int, const char*, int, ...);
[[gnu::alias("fopen")]] FILE* fopen64(const char*, const char*);
[[gnu::alias("mkostemp")]] int mkostemp64(char*, int);
[[gnu::alias("lseek")]] off_t lseek64(int, off_t, int) noexcept;

}  // extern "C"
