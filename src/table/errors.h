#pragma once

// The failures that end a run of ngrex-table, told apart by their exit status.

#include <stdexcept>

namespace colx::table {

// The command line asks for something that does not exist or does not fit the file: exit status 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The input cannot be read or is no output datafile: exit status 1.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The table cannot be written: exit status 1.
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace colx::table
