#include "scale/engine/spent_files.h"

#include <algorithm>
#include <iterator>

#include "base/config.h"

namespace colx::scale {

namespace {

struct Spent {
  std::string_view step;  // that makes the file
  std::string_view what;  // how its name goes on behind that of the task; all names that begin so when it ends with "-"
  std::string_view reader;
};

// Contexts need the sentences as well.
constexpr std::string_view reader_of_sentences = "map, or collect";

constexpr Spent spent_files[] = {
    {"scan", "lemmas", "number"},
    {"scan", "tags", "number"},
    {"scan", "words", reader_of_sentences},
    {"number", "numbers-", reader_of_sentences},
    {"map", "run-", "reduce"},
    {"reduce", "listed", "arrange"},
    {"reduce", "refused", "arrange"},
    {"reduce", "pieces", "order"},
    {"arrange", "arranged", "order"},
    {"arrange", "candidates", "order"},
    {"arrange", "patterns-", "count"},
    {"arrange", "refused", "count"},
    {"order", "patterns", "count"},
    {"collect", "run-", "merge"},
    {"merge", "merged", "format"},
    {"merge", "firsts", "format"},
};

bool _is(std::string_view what, std::string_view name) {
  return name.ends_with("-") ? what.starts_with(name) : what == name;
}

}  // namespace

std::string_view step_of_task(std::string_view task) {
  return task.substr(0, task.find('-'));
}

std::string_view last_reader(std::string_view task, std::string_view what) {
  const std::string_view step = step_of_task(task);
  const auto* const found = std::find_if(std::begin(spent_files), std::end(spent_files),
                                         [&](const Spent& file) { return file.step == step && _is(what, file.what); });
  if (found == std::end(spent_files)) return "";
  if (found->reader == reader_of_sentences) return settings::context_tracing_on() ? "collect" : "map";
  return found->reader;
}

}  // namespace colx::scale
