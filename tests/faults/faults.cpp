// A library to be preloaded under a program: it counts the calls of one kind that the program makes from the beginning
// of main on, together with all processes that it forks, and lets the n-th of them fail as the system would. It is told
// so by
//
//   NGREX_FAULT=KIND:N    one call fails; KIND:N+ lets all calls from the n-th on fail; KIND:N! makes half of the n-th,
//                         where a call has halves, and ends all processes of the group as kill -9 does
//                         (barren: as memory, and there is none set aside for exceptions either; disk: whatever needs
//                         room on a disk, and fails when there is none; task: that file is renamed which says that a
//                         task is done)
//   NGREX_FAULT_NOTE=FILE an existing file, to which it adds a byte when the first call fails
//
// Everything passes through to the C library by its own entry points or by bare system calls, so that the library
// itself makes no call that it counts.

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
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
  disk,
  task,
  process,
  rename_file,
  barren
};

constexpr const char* names[] = {"",     "memory",    "map",       "open", "read", "write",   "close",  "sync",
                                 "seek", "interrupt", "piecemeal", "disk", "task", "process", "rename", "barren"};

Kind wanted = none;
unsigned long fatal_call = 0;
bool onwards = false;
bool kills = false;
std::atomic<unsigned long>* calls = nullptr;  // of all processes

void note_failure() {
  const char* const path = std::getenv("NGREX_FAULT_NOTE");
  const long note = syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_APPEND, 0);
  syscall(SYS_write, note, "x", 1);
  syscall(SYS_close, note);
}

void end_all() {
  syscall(SYS_kill, 0, SIGKILL);
}

// Counts a call of a kind and tells whether it has to fail; errno is set then. When everything is to end here,
// `first_half` is done before that.
template <typename FirstHalf>
bool must_fail(Kind kind, int reason, const FirstHalf& first_half) {
  if (kind != wanted) return false;
  const unsigned long number = ++*calls;
  if (onwards ? number < fatal_call : number != fatal_call) return false;
  if (number == fatal_call) note_failure();
  if (kills) {
    first_half();
    end_all();
  }
  errno = reason;
  return true;
}

bool must_fail(Kind kind, int reason) {
  return must_fail(kind, reason, [] {});
}

// Whether a descriptor is that of a file on a disk that may be written to.
bool is_written(int descriptor) {
  struct stat status {};
  if (wanted != disk || syscall(SYS_fstat, descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return false;
  return (syscall(SYS_fcntl, descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY;
}

bool no_room_to_open(int flags) {
  return (flags & O_CREAT) != 0 && must_fail(disk, ENOSPC);
}

// A write that is to fail for want of room.
template <typename FirstHalf>
bool no_room_to_write(int descriptor, const FirstHalf& first_half) {
  return must_fail(write_bytes, ENOSPC, first_half) || (is_written(descriptor) && must_fail(disk, ENOSPC, first_half));
}

// What is lost is told when a file is closed, or brought to the disk.
bool is_lost(Kind kind, int descriptor) {
  return must_fail(kind, EIO) || (is_written(descriptor) && must_fail(disk, ENOSPC));
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
  kills = *end == '!';
  void* const shared = reinterpret_cast<void*>(
      syscall(SYS_mmap, nullptr, sizeof *calls, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  calls = new (shared) std::atomic<unsigned long>(0);
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
  if (must_fail(open_file, EMFILE) || no_room_to_open(flags)) return -1;
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const int mode = mode_of(flags, arguments);
  va_end(arguments);
  if (must_fail(open_file, EMFILE) || no_room_to_open(flags)) return -1;
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
  if (no_room_to_write(descriptor, [=] { syscall(SYS_write, descriptor, from, size / 2); })) return -1;
  if (must_fail(interrupt, EINTR)) return -1;
  if (size > 1 && must_fail(piecemeal, 0)) size = 1;
  return result_of(syscall(SYS_write, descriptor, from, size));
}

ssize_t pread(int descriptor, void* to, size_t size, off_t place) {
  if (must_fail(read_bytes, EIO) || must_fail(interrupt, EINTR)) return -1;
  if (size > 1 && must_fail(piecemeal, 0)) size = 1;
  return result_of(syscall(SYS_pread64, descriptor, to, size, place));
}

ssize_t pwrite(int descriptor, const void* from, size_t size, off_t place) {
  if (no_room_to_write(descriptor, [=] { syscall(SYS_pwrite64, descriptor, from, size / 2, place); })) return -1;
  if (must_fail(interrupt, EINTR)) return -1;
  if (size > 1 && must_fail(piecemeal, 0)) size = 1;
  return result_of(syscall(SYS_pwrite64, descriptor, from, size, place));
}

ssize_t writev(int descriptor, const iovec* pieces, int count) {
  if (no_room_to_write(descriptor, [=] { syscall(SYS_writev, descriptor, pieces, count / 2); })) return -1;
  if (must_fail(interrupt, EINTR)) return -1;
  if (count > 1 && must_fail(piecemeal, 0)) count = 1;
  return result_of(syscall(SYS_writev, descriptor, pieces, count));
}

// The file is closed all the same, as it is when the system reports so late that bytes were lost.
int close(int descriptor) {
  const bool fails = is_lost(close_file, descriptor);
  const int reason = errno;
  const long result = syscall(SYS_close, descriptor);
  if (fails) errno = reason;
  return fails ? -1 : static_cast<int>(result);
}

int fclose(FILE* file) {
  const bool fails = must_fail(close_file, EIO);
  const int result = next_of<int (*)(FILE*)>("fclose")(file);
  if (fails) errno = EIO;
  return fails ? EOF : result;
}

int fsync(int descriptor) {
  return is_lost(sync_file, descriptor) ? -1 : static_cast<int>(syscall(SYS_fsync, descriptor));
}

int fdatasync(int descriptor) {
  return is_lost(sync_file, descriptor) ? -1 : static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

int ftruncate(int descriptor, off_t size) noexcept {
  if (is_written(descriptor) && must_fail(disk, ENOSPC)) return -1;
  return static_cast<int>(syscall(SYS_ftruncate, descriptor, size));
}

int mkdir(const char* path, mode_t mode) noexcept {
  return must_fail(disk, ENOSPC) ? -1 : static_cast<int>(syscall(SYS_mkdir, path, mode));
}

int rename(const char* from, const char* to) noexcept {
  const auto all = [=] { syscall(SYS_rename, from, to); };
  if (must_fail(rename_file, EIO, all) || must_fail(disk, ENOSPC, all)) return -1;
  if (std::string_view(to).ends_with(".done") && must_fail(task, ENOSPC, all)) return -1;
  return static_cast<int>(syscall(SYS_rename, from, to));
}

pid_t fork() noexcept {
  return must_fail(process, EAGAIN) ? -1 : next_of<pid_t (*)()>("fork")();
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
[[gnu::alias("pread")]] ssize_t pread64(int, void*, size_t, off_t);
[[gnu::alias("pwrite")]] ssize_t pwrite64(int, const void*, size_t, off_t);
[[gnu::alias("ftruncate")]] int ftruncate64(int, off_t) noexcept;

}  // extern "C"
