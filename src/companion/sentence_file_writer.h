#pragma once

// Writing of sentence files.

#include <functional>
#include <string>
#include <string_view>

#include "companion/new_file.h"
#include "companion/sentence_record.h"

namespace colx {

// A sentence file that is made, or extended as a list of datafiles is. It stands under its name when it is complete.
class SentenceFileWriter {
 public:
  // Takes over what a sentence file of that name says of datafiles that are not `replaced`. Throws output_error when it
  // cannot be written, and input_error when something is there that is no sentence file.
  SentenceFileWriter(const std::string& path, const std::function<bool(std::string_view datafile)>& replaced);

  // Writes a sentence. Those of a datafile come together, in ascending order of lines. Throws output_error.
  void add(const SentenceRecord& record);

  // Writes what is left and gives the file its name; to be called once, at the end. Throws output_error.
  void commit();

 private:
  void _flush();

  NewFile _file;
  std::string _lines;
};

}  // namespace colx
