#pragma once

// The list file: one path of a datafile a line.

#include <cstdint>
#include <functional>
#include <string>

namespace colx {

// A datafile of a list, as it was found when the list was read.
struct ListedDatafile {
  std::string entry;       // as the list has it
  std::string path;        // with the prefix before it
  bool is_open = false;    // whether it could be opened for reading
  std::uint64_t size = 0;  // in bytes; 0 when it cannot be taken
};

// Hands the datafiles of a list to `take` in their order, the prefix put before every path as it stands; empty lines
// are skipped. Returns false when the list cannot be opened. Throws fatal_error when it cannot be read to its end, and
// std::bad_alloc.
bool read_datafile_list(const std::string& list, const std::string& prefix,
                        const std::function<void(ListedDatafile datafile)>& take);

}  // namespace colx
