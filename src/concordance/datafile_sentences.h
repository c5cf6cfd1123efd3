#pragma once

// Sentences of datafiles read again, with all that stands there.

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "companion/descriptor.h"
#include "companion/sentence_file.h"
#include "concordance/example_sentence.h"
#include "concordance/hit.h"
#include "concordance/line_index.h"
#include "corpus/datafile_list.h"

namespace colx::concordance {

// Keeps some datafiles open, and the sentence that was read last.
class DatafileSentences {
 public:
  // The datafiles must outlive this object.
  explicit DatafileSentences(const std::vector<ListedDatafile>& datafiles) : _datafiles(datafiles) {}

  // Gives sentences their origins from a sentence file. Throws input_error when that will not do.
  void take_origins(const std::string& path);

  // The sentence at a place, valid until the next call; asked for the same place again, it does not read. Throws
  // input_error when there is no such sentence any more, or the sentence file has the datafile without it.
  const ExampleSentence& at(const Place& place);

 private:
  const Descriptor& _opened(std::size_t datafile);
  void _read_bytes(const Place& place);
  void _read_words(const Place& place);
  void _take_origin(const Place& place);
  [[noreturn]] void _fail(const Place& place) const;

  const std::vector<ListedDatafile>& _datafiles;
  std::vector<std::pair<std::size_t, Descriptor>> _open;
  std::optional<SentenceFile> _origins;
  std::vector<std::optional<std::size_t>> _known;  // by datafile: its number in the sentence file
  std::map<std::size_t, LineIndex> _lines;         // by datafile: the lines of places are not those of a malformed file
  std::string _bytes;
  Place _place;  // of the sentence in hand
  ExampleSentence _sentence;
};

}  // namespace colx::concordance
