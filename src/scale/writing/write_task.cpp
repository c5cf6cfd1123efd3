#include "scale/writing/write_task.h"

#include <iostream>
#include <limits>
#include <new>
#include <ostream>
#include <string>

#include "base/config.h"
#include "base/errors.h"
#include "base/limits.h"
#include "base/notifier.h"
#include "companion/errors.h"
#include "companion/new_file.h"
#include "scale/contexts/format_task.h"
#include "scale/engine/progress.h"
#include "scale/engine/unfinished_output.h"
#include "scale/writing/counted.h"
#include "scale/writing/parts_file.h"
#include "scale/writing/written_listing.h"
#include "scale/writing/written_statistics.h"

namespace colx::scale {

namespace {

// Makes a file that stands under its name when it is complete.
void _make_file(const WorkFolder& folder, const char* path, const PartsFile& content) {
  if (path == nullptr) return;
  try {
    const UnfinishedOutput unfinished(folder);
    NewFile file(path, [&](const std::string& temporary) { unfinished.expect(temporary); });
    unfinished.remember(file);
    write_parts(file, content);
    file.commit();
  } catch (const output_error&) {
    throw fatal_error(std::string("Cannot write to file: ") + path + "!");
  } catch (const std::bad_alloc&) {
    throw out_of_memory(std::string("while writing file: ") + path);
  }
}

// The same in one part.
template <typename WriteContent>
void _make_file(const WorkFolder& folder, const char* path, const WriteContent& write_content) {
  PartsFile content;
  content.parts = 1;
  content.make = [&](std::size_t, std::ostream& out) { write_content(out); };
  _make_file(folder, path, content);
}

template <typename Count>
void _write_files(const Counted& counted, std::size_t jobs) {
  const WorkFolder& folder = counted.folder;
  _make_file(folder, settings::stats_file, [&](std::ostream& out) { write_statistics<Count>(out, counted); });
  _make_file(folder, settings::morphologic_filter_stats_file,
             [&](std::ostream& out) { write_filter_statistics<Count>(out, counted); });
  const PartsFile listing = listing_file<Count>(counted, jobs);
  Progress::begin_stage("write", listing.parts);
  _make_file(folder, settings::output_file, listing);
  _make_file(folder, settings::context_output_file,
             [&](std::ostream& out) { write_context_file(folder, counted.plan, out); });
  Progress::hide();
}

// Whether some count is beyond what ngrex holds. No frequency is greater than the number of all N-grams.
bool _passes_ngrex(const Counted& counted) {
  return counted.occurrences > limits::frequency ||
         (settings::stats_file != nullptr && counted.words() > std::numeric_limits<std::uint32_t>::max());
}

}  // namespace

void write_files(const WorkFolder& folder, const Plan& plan, const Writing& writing) {
  const Counted counted(folder, plan);
  check_patterns(counted);
  if (writing.exact) {
    _write_files<std::uint64_t>(counted, writing.jobs);
    return;
  }
  _write_files<std::uint32_t>(counted, writing.jobs);
  if (_passes_ngrex(counted))
    Notifier(std::cerr).warning("Counts pass " + std::to_string(limits::frequency) +
                                ", which is as far as ngrex counts! Frequencies stop there, and statistics begin "
                                "again; --exact writes them as they are...");
}

}  // namespace colx::scale
