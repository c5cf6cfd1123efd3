#pragma once

// Settings and the tables that depend on N are state of the whole process. A test that needs its own holds a guard.

#include <cstdint>

#include "base/config.h"
#include "model/ngram.h"

namespace colx::test {

// Gives a test fresh settings and puts back, when it goes out of scope, whatever stood before: all settings and the
// tables that depend on N. Guards may be nested.
class SettingsGuard {
 public:
  // Sets every setting to its start value; the tables stay as they are.
  SettingsGuard() { Values{}.apply(); }

  // Sets every setting to its start value but N and, when contexts are to be traced, the path of the contexts file;
  // sets the tables up for them.
  explicit SettingsGuard(std::uint8_t n, bool context_tracing = false) : SettingsGuard() {
    settings::n = n;
    settings::context_output_file = context_tracing ? "contexts" : nullptr;
    init_tables();
  }

  ~SettingsGuard() {
    _saved.apply();
    init_tables();
  }

  SettingsGuard(const SettingsGuard&) = delete;
  SettingsGuard& operator=(const SettingsGuard&) = delete;

  // Sets up the tables for the settings as they stand now; to be called after a test has changed N or context tracing.
  static void init_tables() { NGram::init(); }

 private:
  // All settings; as constructed, with their start values.
  struct Values {
    const char* input_file = nullptr;
    std::uint8_t n = 0;
    const char* output_file = nullptr;
    const char* context_output_file = nullptr;
    const char* context_filter_file = nullptr;
    ContextWindow context_window;
    const char* dir = nullptr;
    const char* morphologic_filter_file = nullptr;
    const char* morphologic_filter_stats_file = nullptr;
    const char* morphologic_tag_mask = nullptr;
    std::uint32_t precision = constants::default_precision;
    const char* stats_file = nullptr;
    bool all_thresholds_together = false;
    Thresholds thresholds;
    Sieves sieves;
    bool sort = false;
    bool verbose = false;
    std::uint32_t bucket_size = 4;
    std::uint32_t crop_ratio = 2;

    // The settings as they stand.
    static Values current() {
      return {settings::input_file,
              settings::n,
              settings::output_file,
              settings::context_output_file,
              settings::context_filter_file,
              settings::context_window,
              settings::dir,
              settings::morphologic_filter_file,
              settings::morphologic_filter_stats_file,
              settings::morphologic_tag_mask,
              settings::precision,
              settings::stats_file,
              settings::all_thresholds_together,
              settings::thresholds,
              settings::sieves,
              settings::sort,
              settings::verbose,
              settings::bucket_size,
              settings::crop_ratio};
    }

    void apply() const {
      settings::input_file = input_file;
      settings::n = n;
      settings::output_file = output_file;
      settings::context_output_file = context_output_file;
      settings::context_filter_file = context_filter_file;
      settings::context_window = context_window;
      settings::dir = dir;
      settings::morphologic_filter_file = morphologic_filter_file;
      settings::morphologic_filter_stats_file = morphologic_filter_stats_file;
      settings::morphologic_tag_mask = morphologic_tag_mask;
      settings::precision = precision;
      settings::stats_file = stats_file;
      settings::all_thresholds_together = all_thresholds_together;
      settings::thresholds = thresholds;
      settings::sieves = sieves;
      settings::sort = sort;
      settings::verbose = verbose;
      settings::bucket_size = bucket_size;
      settings::crop_ratio = crop_ratio;
    }
  };

  const Values _saved = Values::current();
};

}  // namespace colx::test
