#pragma once

// The failures that end a run of a companion program, told apart by their exit status.

#include <stdexcept>

namespace colx {

// The command line is wrong, or asks for something that the input does not have: exit status 2.
class usage_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// An input cannot be read, or is not what it should be: exit status 1.
class input_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// An output cannot be written: exit status 1.
class output_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Nobody reads standard output any longer, so there is no need to go on and nothing to tell.
class reader_gone : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace colx
