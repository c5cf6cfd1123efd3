#include "scale/shards/extracted_sentences.h"

#include "base/config.h"
#include "corpus/buffer.h"

namespace colx::scale {

std::uint64_t extracted_sentences(const WorkFolder& folder, const SentencesOfDatafile& sentences, bool has_bar) {
  DatafileSentences source(folder, sentences, false);
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
