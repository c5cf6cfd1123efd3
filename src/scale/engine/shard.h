#pragma once

// A corpus as a plan has found it and cut it: datafiles, and the shards that tasks read.

#include <cstddef>
#include <cstdint>
#include <string>

namespace colx::scale {

// A datafile of the list.
struct Datafile {
  std::string path;           // as messages and statistics name it
  std::string source;         // where its bytes are: itself, or a copy of what can be read only once
  std::uint64_t size = 0;     // in bytes
  std::uint64_t version = 0;  // checksum of the content; 0 when it could not be read
  std::uint64_t stamp = 0;    // by which it is seen that the content may have changed
  bool has_bar = true;        // whether ngrex would draw a progress bar over it, that is, knows how long it is

  // Whether it could be opened, and read to its end, when the plan was made. What fails later passes over, and is no
  // reason to count the corpus without it.
  bool was_opened() const { return stamp != 0 || source != path; }
  bool was_read() const { return version != 0; }

  friend bool operator==(const Datafile&, const Datafile&) = default;
};

// What one task reads: a piece of a datafile, or some small datafiles one after another. Cuts are nominal: a piece
// really begins behind the first empty line from `begin` on.
struct Shard {
  std::size_t datafile = 0;   // the first one
  std::size_t datafiles = 1;  // when there are several, each is whole
  std::uint64_t begin = 0;    // of a single one
  std::uint64_t end = 0;
  bool is_last = false;  // of its datafile

  std::size_t end_datafile() const { return datafile + datafiles; }

  friend bool operator==(const Shard&, const Shard&) = default;
};

}  // namespace colx::scale
