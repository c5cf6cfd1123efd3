#pragma once

// The folder of intermediate files. A task of the name N leaves files N.something and, when it is done, the manifest
// N.done, which lists them.

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "companion/descriptor.h"
#include "spill/manifest.h"
#include "spill/segment_file.h"

namespace colx::scale {

// Names in one folder.
class WorkFolder {
 public:
  explicit WorkFolder(std::string path) : _path(std::move(path)) {}

  const std::string& path() const { return _path; }

  // The path of the file by which the folder is held, which it has from its first use on.
  std::string lock_path() const { return _path + "/lock"; }

  // The path of a file of a task.
  std::string file(const std::string& task, std::string_view what) const {
    return _path + "/" + task + "." + std::string(what);
  }

  // What a task has left, when it is done and all files that it lists are those that it lists; only those may be
  // missing that some later step is the last to read. Nothing when it has to be done, whatever the reason.
  std::optional<Manifest> done(const std::string& task) const;

  // The same, but a file that is not as it was left is thrown as damaged_file. Nothing when there is no manifest.
  std::optional<Manifest> verified(const std::string& task) const;

  // The manifest of a task that must be there. Throws damaged_file.
  Manifest result(const std::string& task) const;

  // The same of a task that must have been done for what it depends on now.
  Manifest result(const std::string& task, std::uint64_t key) const;

  // The checksum of that, for whatever depends on it. Throws damaged_file.
  std::uint64_t mark(const std::string& task) const;

  // Removes what a task has left, and what another attempt at it may have left.
  void forget(const std::string& task) const { forget(std::set<std::string>{task}); }
  void forget(const std::set<std::string>& tasks) const;

  // Removes what has to be made again when a file is damaged or missing: what its maker has left and, when the file may
  // have gone to make room, what others of the step have left that miss files as well. Returns false for a file that no
  // task makes again.
  bool forget_maker(const std::string& file) const;

  // Removes the files that no step needs behind this one, which is over. When they have so many bytes or more, what the
  // step has left is brought to the disk before, so that the machine may go down and they are not missed. Throws
  // output_error.
  void drop_spent(std::string_view step, std::uint64_t least_missed = std::uint64_t{256} << 20) const;

  // The steps that are the last to read files of a task which is done, of those files that are not there.
  std::vector<std::string_view> readers_of_missing(const std::string& task) const;

  // Removes what processes that were killed were about to write. Nobody else may be at work in the folder.
  void drop_unfinished() const;

  // The task that makes a file of the folder; empty for a file that is none of a task.
  std::string maker(const std::string& file) const;

 private:
  // A manifest whose checksum is known, as the system tells files apart.
  struct Known {
    std::array<std::uint64_t, 4> file;
    std::uint64_t mark;
  };

  // The manifest of a task, which says whose it is; nothing when there is none. Throws damaged_file.
  std::optional<Manifest> _load(const std::string& task) const;
  bool _misses_files(const std::string& task) const;
  void _bring_to_disk(std::string_view step) const;

  std::string _path;
  mutable std::map<std::string, Known> _known;  // by task
};

// What a task says when it is done.
class TaskResult {
 public:
  TaskResult(const WorkFolder& folder, std::string task, std::uint64_t key);

  // Lists a file of the task.
  void add_file(std::string_view what, const FileMark& mark);

  Manifest& manifest() { return _manifest; }

  // Says that the task is done.
  void save() const;

 private:
  const WorkFolder& _folder;
  std::string _task;
  Manifest _manifest;
};

// One run at a time works in a folder, or several processes each at tasks of its own: holds it as long as it lives, and
// with it whoever it forks.
class FolderLock {
 public:
  enum class Use { alone, shared };

  // Makes the folder if it is not there. Throws output_error when another process holds it in a way that excludes this.
  explicit FolderLock(const WorkFolder& folder, Use use = Use::alone);

 private:
  Descriptor _file;
};

// One process at a time is at a task, on whatever machine: holds it as long as it lives, and with it whoever it forks.
class TaskLock {
 public:
  // Waits for the one before. Throws output_error.
  TaskLock(const WorkFolder& folder, const std::string& task);

 private:
  Descriptor _file;
};

}  // namespace colx::scale
