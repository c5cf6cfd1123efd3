#include "options/start_up.h"

#include <string_view>
#include <utility>

#include "base/config.h"
#include "corpus/datafile_list.h"

namespace colx {

namespace {

bool _unreadable(const char* rules, const Notifier& error) {
  error.fatal_error(std::string("Cannot read rules from file: ") + rules + "!");
  return false;
}

bool _load_morphologic_filter(MultiRulesFilter& filter, const Notifier& error) {
  const char* const file = settings::morphologic_filter_file;
  if (file == nullptr) return true;
  if (settings::morphologic_tag_mask == nullptr) {
    error.warning(
        "Extraction of morphologic information is not set on (parameter -m not specified). "
        "Morphologic filter will not be applied...");
    return true;
  }
  return filter.read_rules(file, settings::n) || _unreadable(file, error);
}

bool _load_context_filter(UniRulesFilter& filter, const Notifier& error) {
  const char* const file = settings::context_filter_file;
  if (file == nullptr) return true;
  if (settings::context_output_file == nullptr) {
    error.warning(
        "Context output file is not specified (parameter -c). Morphologic filter for N-gram context will not be "
        "applied...");
    return true;
  }
  if (settings::morphologic_tag_mask == nullptr) {
    error.warning(
        "Extraction of morphologic information is not set on (parameter -m is not specified). Morphologic filter for "
        "N-gram context will not be applied...");
    return true;
  }
  return filter.read_rules(file) || _unreadable(file, error);
}

}  // namespace

bool check_settings(const Notifier& error) {
  if (settings::ready() && settings::correct()) return true;
  error.fatal_error(settings::ready() ? "Some of the program parameters are in incorrect format!"
                                      : "Some of the mandatory program parameters are missing!");
  return false;
}

void warn_of_missing_filter(const Notifier& error) {
  if (settings::morphologic_filter_stats_file == nullptr || settings::morphologic_filter_file != nullptr) return;
  error.warning(
      "Morphologic filter is not turn on (parameter -f not specified). Morphologic filter stats cannot be "
      "retrieved...");
}

void warn_of_thresholds_for_pairs(const Notifier& error) {
  if (settings::n == 2) return;
  const auto warn = [&](double threshold, std::string_view measure) {
    if (threshold > 0.0) {
      error.warning(std::string(measure) + " evaluation only available for N equal 2. Threshold ignored...");
    }
  };
  warn(settings::thresholds.mutual_information, "Mutual information");
  warn(settings::thresholds.pearson, "Pearson's coefficient");
  warn(settings::thresholds.t_test, "t test");
  warn(settings::thresholds.z_score, "z score");
}

bool load_rules(MultiRulesFilter& morphologic_filter, UniRulesFilter& context_filter, const Notifier& error) {
  if (!_load_morphologic_filter(morphologic_filter, error)) return false;
  warn_of_missing_filter(error);
  if (!_load_context_filter(context_filter, error)) return false;
  warn_of_thresholds_for_pairs(error);
  return true;
}

bool read_and_check_input_datafiles(std::vector<std::string>& files, std::uint32_t& total_size, const Notifier& error) {
  const std::string prefix = settings::dir == nullptr ? "" : settings::dir;
  bool all_opened = true;
  const auto check = [&](ListedDatafile datafile) {
    if (!datafile.is_open) {
      error.fatal_error("Input datafile : " + datafile.path + " cannot be opened for reading!");
      all_opened = false;
      return;
    }
    total_size += static_cast<std::uint32_t>(datafile.size);
    files.push_back(std::move(datafile.path));
  };
  if (!read_datafile_list(settings::input_file, prefix, check)) {
    error.fatal_error(std::string("Cannot open the file: ") + settings::input_file + "!");
    return false;
  }
  if (files.empty()) {
    error.fatal_error("Input data files list is empty!");
    return false;
  }
  return all_opened;
}

}  // namespace colx
