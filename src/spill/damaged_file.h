#pragma once

// The failure of an intermediate file that is not what it should be.

#include <string>

#include "companion/errors.h"

namespace colx {

// Names the file, so that whoever made it can be asked to make it again.
class damaged_file : public input_error {
 public:
  // `reason` completes "intermediate file PATH ...".
  damaged_file(std::string path, const std::string& reason)
      : input_error("intermediate file " + path + " " + reason), _path(std::move(path)) {}

  const std::string& path() const { return _path; }

 private:
  std::string _path;
};

}  // namespace colx
