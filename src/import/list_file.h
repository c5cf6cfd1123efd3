#pragma once

// The list file that names the datafiles for ngrex.

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "companion/descriptor.h"

namespace colx {

// A list that is to be extended. It is opened, and created where there is none, at once, so that a run does not find
// out at its end that the list cannot be written; one that was created goes away again when nothing was added. All
// functions throw output_error.
class ListFile {
 public:
  // Refuses what is no regular file, what looks like a treebank, and the files in `kept`.
  ListFile(const std::string& path, const std::vector<FileIdentity>& kept);
  ~ListFile();

  ListFile(const ListFile&) = delete;
  ListFile& operator=(const ListFile&) = delete;

  const FileIdentity& identity() const { return _identity; }

  // Whether an entry leads to that file, under this name or another one.
  bool names(const std::string& path) const;

  // Whether it has other entries than these.
  bool names_others(const std::set<std::string>& paths) const;

  // How many different entries it has.
  std::size_t entries() const { return _entries.size(); }

  // Whether lines end with CR LF, of which ngrex takes the CR for a part of the path.
  bool has_carriage_returns() const { return _has_carriage_returns; }

  // Appends those paths that the list does not name yet, and closes it; to be called once, at the end.
  void add(const std::vector<std::string>& paths);

 private:
  void _note(const std::string& entry);

  std::string _path;
  Descriptor _file;
  bool _remove = false;  // it was created, and is empty
  bool _ends_within_line = false;
  bool _has_carriage_returns = false;
  FileIdentity _identity;
  std::set<std::string> _entries;
  std::set<FileIdentity> _files;  // that the entries lead to
};

}  // namespace colx
