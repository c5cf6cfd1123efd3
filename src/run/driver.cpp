#include "run/driver.h"

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <vector>

#include "base/config.h"
#include "base/errors.h"
#include "base/notifier.h"
#include "base/termination.h"
#include "model/ngram.h"
#include "options/output_paths.h"
#include "options/params.h"
#include "options/start_up.h"
#include "output/contexts.h"
#include "output/statistics.h"
#include "output/writer.h"
#include "run/init.h"
#include "run/persistent.h"
#include "run/processor.h"

namespace colx {

namespace {

// A requested output file: opened before any datafile is read, so that a path that cannot be written is found before
// the long work, and written after all of them.
class OutputFile {
 public:
  // Opens the file, empty, unless the path is null. `failure` is what the user is told before the path if that fails.
  // Throws fatal_error.
  OutputFile(const char* path, const char* failure) : _path(path) {
    if (path == nullptr) return;
    _stream.open(path, std::ios::binary | std::ios::trunc);
    if (!_stream.is_open()) throw fatal_error(std::string(failure) + path + "!");
  }

  // Writes and closes the file between two messages, if it was requested. Throws fatal_error.
  template <typename WriteContent>
  void write(const char* starting, const WriteContent& write_content, const char* finished) {
    if (_path == nullptr) return;
    notifier::progress.info(starting);
    try {
      write_content(_stream);
    } catch (const std::bad_alloc&) {
      throw out_of_memory(std::string("while writing file: ") + _path);
    }
    _stream.close();
    if (!_stream) throw fatal_error(std::string("Cannot write to file: ") + _path + "!");
    notifier::progress.elapsed(finished);
  }

 private:
  const char* _path;
  std::ofstream _stream;
};

// All outputs of a run, opened in this order, each only when it was requested.
struct OutputFiles {
  OutputFile output{settings::output_file, "Cannot open output file: "};
  OutputFile contexts{settings::context_output_file, "Cannot open context output file: "};
  OutputFile stats{settings::stats_file, "Cannot open file to save statistics: "};
  OutputFile filter_stats{settings::morphologic_filter_stats_file,
                          "Cannot open file to save morphologic filter statistics: "};
};

// Checks everything that can be checked before the long work, and opens the outputs. Returns nothing, having said why,
// when a check fails. Throws fatal_error.
std::unique_ptr<OutputFiles> _start_up(std::vector<std::string>& files, std::uint32_t& total_size) try {
  notifier::progress.info("Performing start-up checks.");
  if (!startup_init() || !read_and_check_input_datafiles(files, total_size, notifier::error)) return nullptr;
  check_output_paths(files);
  auto outputs = std::make_unique<OutputFiles>();
  notifier::progress.elapsed("Finished performing start-up checks.");
  return outputs;
} catch (const std::bad_alloc&) {
  throw out_of_memory("while performing start-up checks");
}

// Without a reason there is not even memory to say what the run was at.
[[noreturn]] void _fail(const char* reason) {
  notifier::error.fatal_error(reason == nullptr ? "Program has met with out-of-memory condition!" : reason);
  exit_failure();
}

// Returns false, having said why, when a check fails. Throws fatal_error.
bool _run() {
  if (!check_settings(notifier::error)) {
    print_usage(std::cout);
    return false;
  }
  std::vector<std::string> files;
  std::uint32_t total_size = 0;
  const std::unique_ptr<OutputFiles> outputs = _start_up(files, total_size);
  if (!outputs) return false;

  process(files, total_size);

  using namespace persistent;
  const WordTexts texts{lemmas, tags};
  outputs->stats.write(
      "Writing statistics file.",
      [&](std::ostream& out) { write_stats(out, overall_stats, morphologic_filter.is_on(), sizes_of(texts, ngrams)); },
      "Finished writing statistics file.");
  outputs->filter_stats.write(
      "Writing morphologic filter statistics file.",
      [](std::ostream& out) { write_morphologic_filter_stats(out, morphologic_filter, morphologic_filter_file_stats); },
      "Finished writing morphologic filter statistics file.");
  // Nothing more is counted, and nobody looks N-grams of the full type up: their order takes the memory of their index.
  ngrams.records(NGram::_full_ngram_type).release_index();
  outputs->output.write(
      "Writing output datafile.", [&](std::ostream& out) { write(out, ngrams, texts, notifier::progress); },
      "Finished writing output datafile.");
  outputs->contexts.write(
      "Writing contexts to file.", [&](std::ostream& out) { write_contexts(out, ngrams, texts, notifier::progress); },
      "Finished writing contexts to file.");
  notifier::progress.info("Bye!");
  return true;
}

}  // namespace

int run(int argc, const char* const* argv) {
  end_with_words([](const char* reason) { _fail(reason); });
  try {
    if (argc <= 1) {
      print_usage(std::cout);
      return EXIT_SUCCESS;
    }
    parse_params(argc, argv);
    if (_run()) return EXIT_SUCCESS;
  } catch (const std::bad_alloc&) {
    _fail(nullptr);
  } catch (const std::exception& error) {
    _fail(error.what());
  }
  exit_failure();
}

}  // namespace colx
