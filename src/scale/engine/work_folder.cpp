#include "scale/engine/work_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include <fmt/format.h>

#include "companion/errors.h"
#include "scale/engine/spent_files.h"
#include "spill/damaged_file.h"

namespace colx::scale {

namespace {

constexpr std::string_view done_name = "done";

bool _is_there(const std::string& path) {
  return ::access(path.c_str(), F_OK) == 0;
}

// What stands behind the name of the task in the name of one of its files.
std::string _rest(const std::filesystem::path& file, const std::string& task) {
  return file.filename().string().substr(task.size() + 1);
}

}  // namespace

std::optional<Manifest> WorkFolder::_load(const std::string& task) const {
  const std::string name = file(task, done_name);
  std::optional<Manifest> manifest = Manifest::load(name);
  if (!manifest) return std::nullopt;
  // The key does not tell: tasks that depend on the same have the same.
  const Manifest::Fields* const whose = manifest->find("task");
  if (whose == nullptr || *whose != Manifest::Fields{"task", task}) throw damaged_file(name, "is that of another task");
  return manifest;
}

std::optional<Manifest> WorkFolder::verified(const std::string& task) const {
  std::optional<Manifest> manifest = _load(task);
  if (!manifest) return std::nullopt;
  for (const Manifest::Fields& line : manifest->all("file")) {
    const std::string path = file(task, line.at(1));
    if (!last_reader(task, line.at(1)).empty() && !_is_there(path)) continue;
    if (mark_of(path) != FileMark{to_number(line.at(2)), to_number(line.at(3))})
      throw damaged_file(path, "is not the one that the task " + task + " has left");
  }
  return manifest;
}

std::optional<Manifest> WorkFolder::done(const std::string& task) const {
  try {
    return verified(task);
  } catch (const damaged_file&) {
    return std::nullopt;
  }
}

Manifest WorkFolder::result(const std::string& task) const {
  std::optional<Manifest> manifest = _load(task);
  if (!manifest) throw damaged_file(file(task, done_name), fmt::format("is missing: the task {} is not done", task));
  return *std::move(manifest);
}

Manifest WorkFolder::result(const std::string& task, std::uint64_t key) const {
  Manifest manifest = result(task);
  if (manifest.number("key") != key) throw damaged_file(file(task, done_name), "is of older counts");
  return manifest;
}

std::uint64_t WorkFolder::mark(const std::string& task) const {
  const std::string name = file(task, done_name);
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0) status = {};
  const Known now = {
      {status.st_ino, static_cast<std::uint64_t>(status.st_size), static_cast<std::uint64_t>(status.st_mtim.tv_sec),
       static_cast<std::uint64_t>(status.st_mtim.tv_nsec)},
      0};
  const auto known = _known.find(task);
  if (known != _known.end() && known->second.file == now.file) return known->second.mark;
  const std::optional<std::uint64_t> mark = Manifest::mark_of(name);
  if (!mark) throw damaged_file(name, "is missing");
  _known.insert_or_assign(task, Known{now.file, *mark});
  return *mark;
}

void WorkFolder::forget(const std::set<std::string>& tasks) const {
  // The manifests first, so that no task counts as done whose files are going.
  for (const std::string& task : tasks) {
    ::unlink(file(task, done_name).c_str());
    _known.erase(task);
  }
  for (const auto& entry : std::filesystem::directory_iterator(_path)) {
    if (tasks.contains(maker(entry.path().string()))) ::unlink(entry.path().c_str());
  }
}

bool WorkFolder::_misses_files(const std::string& task) const try {
  const std::vector<Manifest::Fields> files = result(task).all("file");
  return std::any_of(files.begin(), files.end(),
                     [&](const Manifest::Fields& line) { return !_is_there(file(task, line.at(1))); });
} catch (const damaged_file&) {
  return true;
}

std::vector<std::string_view> WorkFolder::readers_of_missing(const std::string& task) const try {
  std::vector<std::string_view> readers;
  const std::optional<Manifest> manifest = _load(task);
  if (!manifest) return readers;
  for (const Manifest::Fields& line : manifest->all("file")) {
    const std::string_view reader = last_reader(task, line.at(1));
    if (!reader.empty() && !_is_there(file(task, line.at(1)))) readers.push_back(reader);
  }
  return readers;
} catch (const damaged_file&) {  // then it is not done
  return {};
}

bool WorkFolder::forget_maker(const std::string& file) const {
  const std::string task = maker(file);
  if (task.empty() || task == "plan") return false;
  std::set<std::string> tasks = {task};
  if (!_is_there(file) && !last_reader(task, _rest(file, task)).empty()) {
    for (const auto& entry : std::filesystem::directory_iterator(_path)) {
      const std::string other = maker(entry.path().string());
      if (step_of_task(other) == step_of_task(task)) tasks.insert(other);
    }
    std::erase_if(tasks, [&](const std::string& other) { return other != task && !_misses_files(other); });
  }
  forget(tasks);
  return true;
}

void WorkFolder::drop_spent(std::string_view step, std::uint64_t least_missed) const {
  std::vector<std::string> spent;
  std::uint64_t bytes = 0;
  for (const auto& entry : std::filesystem::directory_iterator(_path)) {
    const std::string task = maker(entry.path().string());
    if (task.empty()) continue;
    const std::string_view reader = last_reader(task, _rest(entry.path(), task));
    if (reader.empty() || reader != step) continue;
    spent.push_back(entry.path().string());
    bytes += entry.file_size();
  }
  if (bytes >= least_missed) _bring_to_disk(step);
  for (const std::string& path : spent)
    ::unlink(path.c_str());
}

void WorkFolder::_bring_to_disk(std::string_view step) const {
  const auto bring = [](const std::string& path) {
    const Descriptor file = open_for_reading(path);
    if (::fsync(file.number()) != 0) throw output_error(fmt::format("cannot write to {}: {}", path, system_reason()));
  };
  for (const auto& entry : std::filesystem::directory_iterator(_path))
    if (step_of_task(maker(entry.path().string())) == step) bring(entry.path().string());
  bring(_path);
}

void WorkFolder::drop_unfinished() const {
  for (const auto& entry : std::filesystem::directory_iterator(_path)) {
    if (entry.path().extension() == ".part") ::unlink(entry.path().c_str());
  }
}

std::string WorkFolder::maker(const std::string& file) const {
  if (!file.starts_with(_path + "/")) return "";
  const std::string name = file.substr(_path.size() + 1);
  const std::size_t dot = name.find('.');
  return dot == std::string::npos ? "" : name.substr(0, dot);
}

TaskResult::TaskResult(const WorkFolder& folder, std::string task, std::uint64_t key)
    : _folder(folder), _task(std::move(task)) {
  _manifest.add({"task", _task});
  _manifest.add("key", key);
}

void TaskResult::add_file(std::string_view what, const FileMark& mark) {
  _manifest.add({"file", std::string(what), std::to_string(mark.size), std::to_string(mark.checksum)});
}

void TaskResult::save() const {
  _manifest.save(_folder.file(_task, done_name));
}

FolderLock::FolderLock(const WorkFolder& folder, Use use) {
  if (::mkdir(folder.path().c_str(), 0777) != 0 && errno != EEXIST)
    throw output_error(fmt::format("cannot make the folder {}: {}", folder.path(), system_reason()));
  const std::string name = folder.lock_path();
  const int number = ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (number < 0) throw output_error(fmt::format("cannot open {} for writing: {}", name, system_reason()));
  _file = Descriptor(number);
  if (::flock(number, (use == Use::alone ? LOCK_EX : LOCK_SH) | LOCK_NB) != 0) {
    if (errno == EWOULDBLOCK) throw output_error(fmt::format("another run works in {}", folder.path()));
    throw output_error(fmt::format("cannot lock {}: {}", name, system_reason()));
  }
}

TaskLock::TaskLock(const WorkFolder& folder, const std::string& task) {
  const std::string name = folder.file("lock", task);
  const int number = ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (number < 0) throw output_error(fmt::format("cannot open {} for writing: {}", name, system_reason()));
  _file = Descriptor(number);
  int result = 0;
  do
    result = ::flock(number, LOCK_EX);
  while (result != 0 && errno == EINTR);
  if (result != 0) throw output_error(fmt::format("cannot lock {}: {}", name, system_reason()));
}

}  // namespace colx::scale
