#pragma once

// The list file that names the datafiles for ngrex.

#include <string>
#include <vector>

#include "companion/descriptor.h"

namespace colx {

// A list that is to be extended. It is opened, and created where there is none, at once, so that a run does not find
// out at its end that the list cannot be written. Throws output_error.
class ListFile {
 public:
  explicit ListFile(const std::string& path);
  ~ListFile();

  ListFile(const ListFile&) = delete;
  ListFile& operator=(const ListFile&) = delete;

  const std::string& path() const { return _path; }
  const FileIdentity& identity() const { return _identity; }

  // Whether an entry leads to that file, under this name or another one.
  bool names(const std::string& path) const;

  // Appends those paths that the list does not name yet.
  void add(const std::vector<std::string>& paths);

 private:
  std::string _path;
  int _descriptor = -1;
  FileIdentity _identity;
  std::string _content;
};

}  // namespace colx
