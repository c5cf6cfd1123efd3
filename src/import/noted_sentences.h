#pragma once

// The sentence file of an import.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "companion/descriptor.h"
#include "companion/sentence_file_writer.h"
#include "import/sentence.h"

namespace colx {

// Notes the sentences of an import's datafiles as they are written. What the file says of datafiles of other imports
// stays. All functions throw output_error.
class NotedSentences {
 public:
  // Opens the file for an import that writes `output` or, with `is_split`, numbered parts of it. Refuses the files in
  // `kept`, and puts the one that is to be replaced there. Throws input_error when something is there that is no
  // sentence file.
  NotedSentences(const std::string& path, const std::string& output, bool is_split, std::vector<FileIdentity>& kept);

  // Notes a sentence of `source` whose first word stands at that line of the last one of `datafiles`.
  void add(const TreebankSentence& sentence, const std::string& source, const std::vector<std::string>& datafiles,
           std::uint64_t line);

  // To be called once, at the end.
  void commit() { _file->commit(); }

 private:
  std::string _path;
  std::optional<SentenceFileWriter> _file;
  std::size_t _datafiles = 0;  // that are known to be other files
};

}  // namespace colx
