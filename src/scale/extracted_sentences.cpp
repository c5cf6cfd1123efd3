#include "scale/extracted_sentences.h"

#include "base/config.h"
#include "corpus/buffer.h"
#include "scale/datafile_sentences.h"

namespace colx::scale {

std::uint64_t extracted_sentences(const std::vector<std::string>& words_files, bool last_at_end, bool has_bar) {
  DatafileSentences source(words_files, last_at_end);
  Buffer buffer(source, settings::context_window);
  buffer._init();
  if (buffer.empty()) return 0;
  std::uint64_t count = 0;
  do
    ++count;
  while (!(has_bar && source.at_end()) && buffer.next());
  return count;
}

}  // namespace colx::scale
