#pragma once

// The list that an import adds its datafiles to, with the record beside it of how they were made.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "companion/descriptor.h"
#include "import/list_file.h"
#include "import/list_record.h"

namespace colx {

// Both files are opened in the constructor and written by `add`; what was created and not written goes away again.
// All functions that touch files throw output_error.
class ExtendedList {
 public:
  // Opens the list; refuses the files in `kept`, and puts its own there.
  ExtendedList(const std::string& path, std::vector<FileIdentity>& kept);

  // What this import writes: the path of its datafile, and the most words of each of several; 0: there is one.
  struct Output {
    std::string path;
    std::uint64_t split;
  };

  // Opens the record; refuses the files in `kept`, and puts its own there. Returns notes for the report where the list
  // names datafiles of other imports. Throws usage_error when those were made in another way and the option for it was
  // not given.
  std::vector<std::string> open_record(const Output& output, const ListRecord::Value& tags,
                                       const ListRecord::Value& relations, std::vector<FileIdentity>& kept);

  // Whether lines end with CR LF, of which ngrex takes the CR for a part of the path.
  bool has_carriage_returns() const { return _list.has_carriage_returns(); }

  // Whether an entry leads to that file, under this name or another one.
  bool names(const std::string& path) const { return _list.names(path); }

  // Appends the paths that the list does not name yet, and writes the record where it was opened; to be called once, at
  // the end.
  void add(const std::vector<std::string>& paths);

 private:
  std::string _path;
  ListFile _list;
  std::optional<ListRecord> _record;
  std::string _tags;
  std::string _relations;
};

}  // namespace colx
