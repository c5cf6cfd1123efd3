#include "import/fault_teller.h"

#include <cstdio>
#include <utility>

#include <fmt/format.h>

#include "companion/utf8.h"

namespace colx {

namespace {

// The most faults of an input that cost sentences and are told one by one, unless finding them is all that is wanted.
constexpr std::uint64_t most_faults_told = 50;

}  // namespace

void say(const std::string& text) {
  std::fputs(text.c_str(), stderr);
}

void FaultTeller::begin_input(std::string name, TreebankFormat format) {
  _input = std::move(name);
  _format = format;
  _of_input = {};
  _costly = 0;
  _untold = 0;
}

void FaultTeller::tell(const std::vector<TreebankProblem>& problems) {
  if (problems.empty()) return;
  const bool is_checked_datafile = _is_check && _format == TreebankFormat::datafile;
  const char* const read_over = is_checked_datafile ? "importing the datafile mends it" : "read as if it were right";
  const char* const consequence = !must_be_skipped(problems) ? read_over
                                  : _is_check                ? "the sentence would be skipped"
                                                             : "the sentence is skipped";
  for (const TreebankProblem& problem : problems) {
    _counts.add(problem.fault);
    if (!_is_told(problem.fault)) {
      ++_untold;
      continue;
    }
    const std::string column =
        problem.column == 0 ? "" : fmt::format("column {} ({}): ", problem.column, problem.column_name);
    complain(fmt::format("{}:{}: {}{}; {}", _input, problem.line, column, problem.text, consequence));
  }
}

bool FaultTeller::_is_told(Fault fault) {
  const bool is_first = _of_input.of(fault) == 0;
  _of_input.add(fault);
  return _is_check || (costs_sentence(fault) ? ++_costly <= most_faults_told : is_first);
}

void FaultTeller::end_input() const {
  if (_untold > 0) say(fmt::format("ngrex-import: {}: further faults: {} (--check tells them all)\n", _input, _untold));
}

void FaultTeller::complain(const std::string& message) {
  ++_told;
  _bar.clear();
  say(fmt::format("ngrex-import: {}\n", printable(message)));
}

}  // namespace colx
