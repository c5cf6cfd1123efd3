#pragma once

// The checks and preparations between reading the command line and reading the corpus. What is wrong is said on the
// channel that is handed in.

#include <cstdint>
#include <string>
#include <vector>

#include "base/notifier.h"
#include "filter/filter.h"

namespace colx {

// Returns false, having said why, when the settings are not complete or not correct.
bool check_settings(const Notifier& error);

// Warns when statistics are asked for of a filter that there is none of.
void warn_of_missing_filter(const Notifier& error);

// Warns of thresholds that are for pairs when N-grams are none.
void warn_of_thresholds_for_pairs(const Notifier& error);

// Loads the rule files into the filters and warns of settings without effect. Returns false, having said why, when a
// rule file cannot be opened. Throws fatal_error when one cannot be read to its end.
bool load_rules(MultiRulesFilter& morphologic_filter, UniRulesFilter& context_filter, const Notifier& error);

// Reads the list of datafiles and tries each. Appends the paths of those that can be opened to `files` and adds their
// sizes in bytes to `total_size`, modulo 2^32. Returns false, having said why, when the list cannot be opened or names
// no datafile, or when any datafile cannot be opened; all such are reported. Throws fatal_error when the list cannot be
// read to its end.
bool read_and_check_input_datafiles(std::vector<std::string>& files, std::uint32_t& total_size, const Notifier& error);

}  // namespace colx
