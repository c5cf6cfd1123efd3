#pragma once

// The output file that is being written, remembered in the work folder: when the program is killed without a chance to
// remove it, the next run in that folder does.

#include <string>

#include "companion/new_file.h"
#include "scale/work/work_folder.h"

namespace colx::scale {

// Remembers one file as long as it lives. The lock of the folder must be held.
class UnfinishedOutput {
 public:
  explicit UnfinishedOutput(const WorkFolder& folder);
  ~UnfinishedOutput();

  UnfinishedOutput(const UnfinishedOutput&) = delete;
  UnfinishedOutput& operator=(const UnfinishedOutput&) = delete;

  // Remembers the file under its temporary name, if it has one, and if that can be written down: no output is to fail
  // for it.
  void remember(const NewFile& file) const;

 private:
  std::string _name;
};

// Removes what a run that was killed has left, if it is still the file that was remembered. The lock of the folder must
// be held.
void remove_unfinished_output(const WorkFolder& folder);

}  // namespace colx::scale
