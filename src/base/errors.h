#pragma once

// The exceptions that end a run during its start-up checks, while datafiles are processed or output files are written.

#include <cstdint>
#include <stdexcept>
#include <string>

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

// The end of a run that has no memory left; `moment` completes the sentence, as in "while processing datafile: a".
inline fatal_error out_of_memory(const std::string& moment) {
  return fatal_error("Program has met with out-of-memory condition " + moment + "!");
}

// The end of a run that has more different N-grams of a type than one can number.
inline fatal_error too_many_records(unsigned type, std::uint32_t most) {
  return fatal_error("There are more than " + std::to_string(most) + " different N-grams of type " +
                     std::to_string(type) + ", which is as many as can be counted!");
}

// The end of a run for which an open input could not be read to its end.
inline fatal_error unreadable(const std::string& path) {
  return fatal_error("Cannot read from file: " + path + "!");
}

}  // namespace colx
