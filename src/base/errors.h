#pragma once

// The two exceptions that end a run while datafiles are processed or output files are written.

#include <stdexcept>

namespace colx {

// Ends the run; the text is what the user is told after "FATAL ERROR: ".
class fatal_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Says that a string store has no index left for a new text.
class index_overflow : public std::overflow_error {
 public:
  using std::overflow_error::overflow_error;
};

}  // namespace colx
