#include "run/init.h"

#include <string>
#include <string_view>
#include <utility>

#include "base/config.h"
#include "base/notifier.h"
#include "corpus/datafile_list.h"
#include "model/ngram.h"
#include "model/ngram_hash.h"
#include "run/persistent.h"

namespace colx {

namespace {

bool _unreadable(const char* rules) {
  notifier::error.fatal_error(std::string("Cannot read rules from file: ") + rules + "!");
  return false;
}

bool _load_morphologic_filter() {
  const char* const file = settings::morphologic_filter_file;
  if (file == nullptr) return true;
  if (settings::morphologic_tag_mask == nullptr) {
    notifier::error.warning(
        "Extraction of morphologic information is not set on (parameter -m not specified). "
        "Morphologic filter will not be applied...");
    return true;
  }
  return persistent::morphologic_filter.read_rules(file, settings::n) || _unreadable(file);
}

bool _load_context_filter() {
  const char* const file = settings::context_filter_file;
  if (file == nullptr) return true;
  if (settings::context_output_file == nullptr) {
    notifier::error.warning(
        "Context output file is not specified (parameter -c). Morphologic filter for N-gram context will not be "
        "applied...");
    return true;
  }
  if (settings::morphologic_tag_mask == nullptr) {
    notifier::error.warning(
        "Extraction of morphologic information is not set on (parameter -m is not specified). Morphologic filter for "
        "N-gram context will not be applied...");
    return true;
  }
  return persistent::context_filter.read_rules(file) || _unreadable(file);
}

void _warn_of_thresholds_for_pairs() {
  if (settings::n == 2) return;
  const auto warn = [](double threshold, std::string_view measure) {
    if (threshold > 0.0) {
      notifier::error.warning(std::string(measure) + " evaluation only available for N equal 2. Threshold ignored...");
    }
  };
  warn(settings::thresholds.mutual_information, "Mutual information");
  warn(settings::thresholds.pearson, "Pearson's coefficient");
  warn(settings::thresholds.t_test, "t test");
  warn(settings::thresholds.z_score, "z score");
}

}  // namespace

bool startup_init() {
  NGram::init();
  if (!NGramHashCounter::check(settings::n)) notifier::error.fatal_error("Predefined # counter tables are to small!");
  persistent::ngrams.init(constants::ngram_within_block);

  if (!_load_morphologic_filter()) return false;
  if (settings::morphologic_filter_stats_file != nullptr && settings::morphologic_filter_file == nullptr) {
    notifier::error.warning(
        "Morphologic filter is not turn on (parameter -f not specified). Morphologic filter stats cannot be "
        "retrieved...");
  }
  if (!_load_context_filter()) return false;
  _warn_of_thresholds_for_pairs();
  return true;
}

bool read_and_check_input_datafiles(std::vector<std::string>& files, std::uint32_t& total_size) {
  const std::string prefix = settings::dir == nullptr ? "" : settings::dir;
  bool all_opened = true;
  const auto check = [&](ListedDatafile datafile) {
    if (!datafile.is_open) {
      notifier::error.fatal_error("Input datafile : " + datafile.path + " cannot be opened for reading!");
      all_opened = false;
      return;
    }
    total_size += static_cast<std::uint32_t>(datafile.size);
    files.push_back(std::move(datafile.path));
  };
  if (!read_datafile_list(settings::input_file, prefix, check)) {
    notifier::error.fatal_error(std::string("Cannot open the file: ") + settings::input_file + "!");
    return false;
  }
  if (files.empty()) {
    notifier::error.fatal_error("Input data files list is empty!");
    return false;
  }
  return all_opened;
}

}  // namespace colx
