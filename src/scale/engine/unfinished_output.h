#pragma once

// The output file that is being written, remembered in the work folder: when the program is killed without a chance to
// remove it, the next run in that folder does.

#include <string>

#include "companion/new_file.h"
#include "scale/engine/work_folder.h"

namespace colx::scale {

// Remembers one file as long as it lives. The lock of the folder must be held.
class UnfinishedOutput {
 public:
  explicit UnfinishedOutput(const WorkFolder& folder);
  ~UnfinishedOutput();

  UnfinishedOutput(const UnfinishedOutput&) = delete;
  UnfinishedOutput& operator=(const UnfinishedOutput&) = delete;

  // Remembers a name of which a file is about to be made, so that one that is found there later, and is empty, is
  // known.
  void expect(const std::string& temporary) const;

  // Remembers the file under its temporary name, if it has one.
  void remember(const NewFile& file) const;

 private:
  // Where that cannot be written down, nothing is: no output is to fail for it.
  void _note(const std::string& temporary, const std::string& identity) const;

  std::string _name;
};

// Removes what a run that was killed has left, if it is still the file that was remembered or, where it was killed
// before it could tell which that is, an empty one. The lock of the folder must be held.
void remove_unfinished_output(const WorkFolder& folder);

}  // namespace colx::scale
