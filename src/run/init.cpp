#include "run/init.h"

#include "base/config.h"
#include "base/notifier.h"
#include "model/ngram.h"
#include "model/ngram_hash.h"
#include "options/start_up.h"
#include "run/persistent.h"

namespace colx {

bool startup_init() {
  NGram::init();
  if (!NGramHashCounter::check(settings::n)) notifier::error.fatal_error("Predefined # counter tables are to small!");
  persistent::ngrams.init(constants::ngram_within_block);
  if (!load_rules(persistent::morphologic_filter, persistent::context_filter, notifier::error)) return false;
  // A filter may refuse an N-gram and let patterns of it through, and contexts belong to occurrences of patterns. Of
  // pairs all patterns are words, whose records take less memory than two numbers for every pair.
  if (settings::n > 2 && !NGram::_context_tracing_on && !persistent::morphologic_filter.is_on())
    persistent::ngrams.count_patterns_last();
  return true;
}

}  // namespace colx
