#pragma once

// The command line of ngrex-scale: a command, its own options, which begin with two hyphens, and all options of ngrex.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "companion/command_line.h"

namespace colx::scale {

// What the command line asks for, beside what the settings hold.
struct Options {
  std::string command;
  std::size_t jobs = 0;    // processes at a time; 0: not said
  std::size_t memory = 0;  // bytes for each process; 0: not said
  std::optional<std::string> work;
  bool drop = false;        // whether what is not needed any more goes from a folder that was named, too
  bool keep_going = false;  // whether a task that fails lets the others of its step go on
  bool quiet = false;       // no progress bar
  bool exact = false;       // whether counts are written as they are
  std::uint64_t shard = 0;  // bytes; 0: not said
  std::size_t task = 0;     // of a step: the first task to be done, and how far the next one is
  std::size_t of = 1;
  std::vector<std::string> words;  // the options of ngrex
};

extern const Program program;

// Reads the command line. Returns nothing when it asks for something to be printed, which is then printed. Throws
// usage_error.
std::optional<Options> read_options(const std::vector<std::string>& arguments);

}  // namespace colx::scale
