#include "run/driver.h"

#include <cstdint>
#include <exception>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "base/config.h"
#include "base/errors.h"
#include "base/notifier.h"
#include "model/ngram.h"
#include "output/contexts.h"
#include "output/statistics.h"
#include "output/writer.h"
#include "run/init.h"
#include "run/params.h"
#include "run/persistent.h"
#include "run/processor.h"

namespace colx {

namespace {

[[noreturn]] void _fail(const std::string& message) {
  notifier::error.fatal_error(message);
  exit_failure();
}

void _check_settings() {
  std::string problem;
  if (!settings::ready()) {
    problem = "Some of the mandatory program parameters are missing!";
  } else if (!settings::correct()) {
    problem = "Some of the program parameters are in incorrect format!";
  } else {
    return;
  }
  notifier::error.fatal_error(problem);
  print_usage();
  exit_failure();
}

// A requested output file: opened before any datafile is read, so that a path that cannot be written is found before
// the long work, and written after all of them.
class OutputFile {
 public:
  // Opens the file, empty, unless the path is null. `failure` is what the user is told before the path if that fails.
  OutputFile(const char* path, const char* failure) : _path(path) {
    if (path == nullptr) return;
    _stream.open(path, std::ios::binary | std::ios::trunc);
    if (!_stream.is_open()) _fail(std::string(failure) + path + "!");
  }

  // Writes and closes the file between two messages, if it was requested.
  template <typename WriteContent>
  void write(const char* starting, const WriteContent& write_content, const char* finished) {
    if (_path == nullptr) return;
    notifier::progress.info(starting);
    write_content(_stream);
    _stream.close();
    if (!_stream) throw fatal_error(std::string("Cannot write to file: ") + _path + "!");
    notifier::progress.elapsed(finished);
  }

 private:
  const char* _path;
  std::ofstream _stream;
};

void _run() {
  notifier::progress.info("Performing start-up checks.");
  if (!startup_init()) exit_failure();
  std::vector<std::string> files;
  std::uint32_t total_size = 0;
  if (!read_and_check_input_datafiles(files, total_size)) exit_failure();

  OutputFile output(settings::output_file, "Cannot open output file: ");
  OutputFile contexts(settings::context_output_file, "Cannot open context output file: ");
  OutputFile stats(settings::stats_file, "Cannot open file to save statistics: ");
  OutputFile filter_stats(settings::morphologic_filter_stats_file,
                          "Cannot open file to save morphologic filter statistics: ");
  notifier::progress.elapsed("Finished performing start-up checks.");

  process(files, total_size);

  using namespace persistent;
  const WordTexts texts{lemmas, tags};
  stats.write(
      "Writing statistics file.",
      [&](std::ostream& out) { write_stats(out, overall_stats, morphologic_filter.is_on(), texts, ngrams); },
      "Finished writing statistics file.");
  filter_stats.write(
      "Writing morphologic filter statistics file.",
      [](std::ostream& out) { write_morphologic_filter_stats(out, morphologic_filter, morphologic_filter_file_stats); },
      "Finished writing morphologic filter statistics file.");
  // Nothing more is counted, and nobody looks N-grams of the full type up: their order takes the memory of their index.
  ngrams.records(NGram::_full_ngram_type).release_index();
  output.write(
      "Writing output datafile.", [&](std::ostream& out) { write(out, ngrams, texts, notifier::progress); },
      "Finished writing output datafile.");
  contexts.write(
      "Writing contexts to file.", [&](std::ostream& out) { write_contexts(out, ngrams, texts, notifier::progress); },
      "Finished writing contexts to file.");
  notifier::progress.info("Bye!");
}

}  // namespace

int run(int argc, const char* const* argv) {
  if (argc <= 1) {
    print_usage();
    return 0;
  }
  parse_params(argc, argv);
  _check_settings();
  try {
    _run();
  } catch (const std::exception& error) {
    _fail(error.what());
  }
  return 0;
}

}  // namespace colx
