#include "companion/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx {

namespace {

constexpr std::array<int, 3> interruptions = {SIGHUP, SIGINT, SIGTERM};

std::atomic<const char*> _unfinished = nullptr;  // the temporary name that an interruption removes
static_assert(std::atomic<const char*>::is_always_lock_free);

extern "C" void _remove_unfinished(int signal) {
  remove_unfinished_file();
  std::signal(signal, SIG_DFL);
  ::raise(signal);
}

// Has interruptions remove that file; a signal that the surroundings ignore stays ignored.
void _watch(const char* name) {
  _unfinished = name;
  for (const int signal : interruptions) {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action.sa_handler = _remove_unfinished;
    ::sigaction(signal, &action, nullptr);
  }
}

// The path behind symbolic links, also when nothing is there yet.
std::string _behind_links(const std::string& path) {
  std::error_code error;
  const std::filesystem::path behind = std::filesystem::weakly_canonical(path, error);
  return error ? path : behind.string();
}

// Whether a rename onto that name replaces what is meant and nothing else: the name is free, or itself that of the
// regular file `meant`. Devices, pipes, and links that could not be followed, such as /dev/stdout may be one, stay.
bool _may_be_replaced(const std::string& name, const struct stat* meant) {
  struct stat own {};
  if (::lstat(name.c_str(), &own) != 0) return meant == nullptr && errno == ENOENT;
  return meant != nullptr && S_ISREG(own.st_mode) && own.st_dev == meant->st_dev && own.st_ino == meant->st_ino;
}

Descriptor _open_itself(const std::string& path) {
  const int number = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_CREAT | O_TRUNC, 0666);
  if (number < 0) throw output_error(fmt::format("cannot open {} for writing: {}", path, system_reason()));
  return Descriptor(number);
}

// The name that such a file has beside the target.
std::string _temporary_name(const std::string& target, int number) {
  return fmt::format("{}.{}.part", target, number);
}

// Makes the file under a name of its own beside the target, and says which. It bears the number of the process, or one
// of the next when there is such a file: one that was killed may have had the same number.
Descriptor _open_beside(const std::string& target, const std::string& shown, const NewFile::Announce& announce,
                        std::string& temporary) {
  constexpr int most_attempts = 1000;
  for (int attempt = 0;; ++attempt) {
    temporary = _temporary_name(target, ::getpid() + attempt);
    if (announce) announce(temporary);
    const int number = ::open(temporary.c_str(), O_WRONLY | O_CLOEXEC | O_CREAT | O_EXCL, 0666);
    if (number >= 0) return Descriptor(number);
    if (errno != EEXIST || attempt == most_attempts)
      throw output_error(fmt::format("cannot open {} for writing: {}", shown, system_reason()));
  }
}

// Whether a file can be made beside the target, tried with one that never has a name. Not all file systems know these.
bool _makes_nameless_file_beside(const std::string& target) {
  struct stat status {};
  if (::lstat(_temporary_name(target, ::getpid()).c_str(), &status) == 0 || errno != ENOENT) return false;
  const std::string folder = std::filesystem::path(target).parent_path().string();
  const int number = ::open(folder.empty() ? "." : folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
  if (number < 0) return false;
  const Descriptor file(number);
  return true;
}

}  // namespace

void check_new_file(const std::string& path) {
  const std::string target = _behind_links(path);
  struct stat status {};
  const bool is_there = ::stat(path.c_str(), &status) == 0;
  if (_may_be_replaced(target, is_there ? &status : nullptr) && (!is_there || ::access(path.c_str(), W_OK) == 0) &&
      _makes_nameless_file_beside(target))
    return;
  const NewFile file(path);  // says why it cannot be made, or that it can all the same
}

void remove_unfinished_file() {
  if (const char* const name = _unfinished.load(); name != nullptr) ::unlink(name);
}

NewFile::NewFile(std::string path, const Announce& announce) : _path(std::move(path)), _target(_behind_links(_path)) {
  struct stat status {};
  const bool is_there = ::stat(_path.c_str(), &status) == 0;
  if (!_may_be_replaced(_target, is_there ? &status : nullptr)) {
    _file = _open_itself(_path);
    return;
  }
  // One that must not be written to is not to be replaced either.
  if (is_there && ::access(_path.c_str(), W_OK) != 0)
    throw output_error(fmt::format("cannot open {} for writing: {}", _path, system_reason()));
  std::string temporary;
  _file = _open_beside(_target, _path, announce, temporary);
  _temporary = std::move(temporary);
  _watch(_temporary.c_str());
  if (is_there && ::fchmod(_file.number(), status.st_mode & 07777) != 0) {
    const std::string reason = system_reason();
    _discard();
    throw output_error(fmt::format("cannot give {} its permissions: {}", _path, reason));
  }
}

NewFile::~NewFile() {
  _discard();
}

void NewFile::_discard() {
  if (_temporary.empty()) return;
  ::unlink(_temporary.c_str());
  _unfinished = nullptr;
}

void NewFile::send_to_disk(std::uint64_t place, std::uint64_t size) const {
  // Only a hint, for file systems that take it; what fails, `commit` tells.
  if (size > 0)
    ::sync_file_range(_file.number(), static_cast<off_t>(place), static_cast<off_t>(size), SYNC_FILE_RANGE_WRITE);
}

void NewFile::commit() {
  if (_temporary.empty()) {
    _file.close(_path);
    return;
  }
  if (::fsync(_file.number()) != 0) throw output_error(fmt::format("cannot write to {}: {}", _path, system_reason()));
  _file.close(_path);
  if (::rename(_temporary.c_str(), _target.c_str()) != 0)
    throw output_error(fmt::format("cannot rename {} to {}: {}", _temporary, _path, system_reason()));
  _unfinished = nullptr;
  _temporary.clear();
}

}  // namespace colx
