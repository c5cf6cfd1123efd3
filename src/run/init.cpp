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
  return load_rules(persistent::morphologic_filter, persistent::context_filter, notifier::error);
}

}  // namespace colx
