#pragma once

// A file that stands under its name only when it is complete. Until then it has another name beside it, so that what
// was there before is kept when a run fails or is interrupted, and nobody takes a half for the whole.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "companion/descriptor.h"

namespace colx {

// The file of a program's output; a program has one such at a time.
class NewFile {
 public:
  using Announce = std::function<void(const std::string& temporary)>;

  // Creates the file under its temporary name, with the permissions of the one that it is to replace. A name that is
  // neither free nor that of a regular file, such as a pipe's, or that of a descriptor is opened and written as it is.
  // `announce`, if there is one, is told each temporary name before a file is made of it. Throws output_error.
  explicit NewFile(std::string path, const Announce& announce = {});

  // Removes the file unless it was committed; also SIGHUP, SIGINT and SIGTERM do, before they end the program.
  ~NewFile();

  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  const std::string& path() const { return _path; }

  // Where the content is until it is committed; empty for a pipe and the like.
  const std::string& temporary_path() const { return _temporary; }

  // Appends to the file. Throws output_error.
  void write(std::string_view text) const { _file.write_fully(text, _path); }

  // Writes at a place of the file, whatever has been appended; only where the content has a temporary name. Processes
  // that this one has forked may do so at the same time, at other places. Throws output_error.
  void write_at(std::string_view text, std::uint64_t place) const { _file.write_fully_at(text, place, _path); }

  // Has the system begin to bring a stretch to the disk, so that `commit` has less to wait for.
  void send_to_disk(std::uint64_t place, std::uint64_t size) const;

  // Brings the content to the disk and then under its name; to be called once, at the end. Throws output_error.
  void commit();

 private:
  void _discard();

  std::string _path;
  std::string _target;  // the path behind symbolic links
  std::string _temporary;
  Descriptor _file;
};

// Finds out whether such a file can be made, and makes none that a program which is killed would leave behind. Throws
// output_error.
void check_new_file(const std::string& path);

// Removes what is there of a file that was not committed, for an end of the program that gives nothing back.
void remove_unfinished_file();

}  // namespace colx
