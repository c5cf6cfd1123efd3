#include "run/processor.h"

#include <fstream>
#include <new>

#include "base/errors.h"
#include "base/files.h"
#include "base/notifier.h"
#include "corpus/store_overflow.h"
#include "extraction/extractor.h"
#include "output/utils.h"
#include "run/persistent.h"

namespace colx {

namespace {

std::uint32_t _extract(std::ifstream& stream, NamedDataFileStats& stats) {
  try {
    const std::uint32_t size = extract(stream, stats,
                                       {persistent::lemmas, persistent::tags, persistent::ngrams,
                                        persistent::morphologic_filter, persistent::context_filter},
                                       {notifier::error, notifier::progress});
    if (stream.fail()) throw unreadable(stats.name);
    return size;
  } catch (const index_overflow&) {
    throw fatal_error(explain_overflow(persistent::lemmas, persistent::tags));
  } catch (const string_too_long& error) {
    throw fatal_error(std::string(error.what()) + " Found while processing datafile: " + stats.name + "!");
  }
}

void _keep_filter_stats(const std::string& path) {
  if (!persistent::morphologic_filter.is_on()) return;
  persistent::morphologic_filter_file_stats.emplace(path, persistent::morphologic_filter.file_stats);
  persistent::morphologic_filter.file_stats.reset();
}

// Adds the size of the datafile to `processed`.
void _process_datafile(const std::string& path, std::uint32_t total_size, std::uint32_t& processed) {
  std::ifstream stream = open_input(path);
  if (!stream.is_open()) {
    notifier::error.warning("Input datafile: " + path + " cannot be opened for reading! Skipping...");
    return;
  }
  NamedDataFileStats stats;
  stats.name = path;
  notifier::progress.info("Processing datafile: " + path);
  const std::uint32_t size = _extract(stream, stats);
  stream.close();

  persistent::overall_stats.push_back(stats);
  _keep_filter_stats(path);
  notifier::progress.elapsed("Finished processing datafile: " + path + " (" + unsigned2str(size) + " bytes)");
  if (total_size != 0) {
    processed += size;
    const double percentage = static_cast<double>(processed) / total_size * 100.0;
    notifier::progress.info("Overall processing progress: " + double2str(percentage, processing_progress_precision) +
                            "%");
  }
}

}  // namespace

void process(const std::vector<std::string>& files, std::uint32_t total_size) {
  notifier::progress.info("Processing input datafiles.");
  std::uint32_t processed = 0;
  for (const std::string& path : files) {
    try {
      _process_datafile(path, total_size, processed);
      if (&path == &files.back() && persistent::ngrams.patterns_last()) persistent::ngrams.count_patterns();
    } catch (const std::bad_alloc&) {
      throw out_of_memory("while processing datafile: " + path);
    }
  }
  notifier::progress.elapsed("Finished processing input datafiles.");
}

}  // namespace colx
