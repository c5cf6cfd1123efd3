#pragma once

// How the datafiles of a list were made, in a file beside the list, so that it is not extended with others by mistake.

#include <set>
#include <string>
#include <vector>

#include "companion/descriptor.h"

namespace colx {

// The file NAME.import for the list NAME. It has two lines, "tags: " and "relations: ", with the values of --tag and
// --relations by which datafiles of the list were made, separated by blanks. It is opened, and created where there is
// none, at once; one that was created goes away again when it was not written. All functions throw output_error.
class ListRecord {
 public:
  // Refuses what is no regular file, a file of another form, and the files in `kept`.
  ListRecord(const std::string& list, const std::vector<FileIdentity>& kept);
  ~ListRecord();

  ListRecord(const ListRecord&) = delete;
  ListRecord& operator=(const ListRecord&) = delete;

  const std::string& path() const { return _path; }
  const FileIdentity& identity() const { return _identity; }

  // Whether there was one.
  bool is_there() const { return _is_there; }

  // Compares what it says with the values of this import, of which the options may have been given: returns notes for
  // the report. Throws usage_error when they differ and the option was not given.
  struct Value {
    std::string name;
    bool is_given;
    std::string reason;  // why it was chosen when it was not given; may be empty
  };
  std::vector<std::string> compare(const Value& tags, const Value& relations) const;

  // Writes it, with these values instead of the old ones or besides, and closes it; to be called once, at the end.
  void write(const std::string& tags, const std::string& relations, bool besides);

 private:
  void _compare(const std::string& option, const std::set<std::string>& theirs, const Value& ours,
                std::vector<std::string>& notes) const;
  void _read(const std::string& content);

  std::string _list;
  std::string _path;
  Descriptor _file;
  bool _is_there;
  bool _remove = false;  // it was created, and is empty
  FileIdentity _identity;
  std::set<std::string> _tags;
  std::set<std::string> _relations;
};

}  // namespace colx
