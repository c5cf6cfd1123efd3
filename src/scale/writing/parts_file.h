#pragma once

// A file made of parts that follow one another, whose texts are made by several processes at the same time.
//
// A process holds the text of its part until it is known where the part begins, that is, until the sizes of all parts
// before it are known, and writes it there. One whose text outgrows its memory waits for that moment and then goes on
// piece by piece. Parts are taken in their order and the first one that is not finished knows where it begins, so there
// is always a process that can go on.

#include <cstddef>
#include <functional>
#include <ostream>

#include "companion/new_file.h"

namespace colx::scale {

// How a file is made.
struct PartsFile {
  std::size_t parts = 0;
  std::function<void(std::size_t part, std::ostream& out)> make;  // writes the text of a part
  std::size_t processes = 1;                                      // as many at the most
  std::size_t memory = 0;                                         // bytes of text that each of them holds
};

// Writes all parts, from the place where the file stands, which must be its begin; does not commit it. What is no file
// of its own with a size, such as a pipe, and all of it with one process, is made by this process. Throws output_error,
// what `make` throws as do_tasks does, and fatal_error when memory runs out.
void write_parts(const NewFile& file, const PartsFile& content);

}  // namespace colx::scale
