#include "import/fault.h"

#include <fmt/format.h>

namespace colx {

namespace {

struct FaultKind {
  Fault fault;
  std::string_view name;
  bool costs_sentence;
};

constexpr std::array _kinds = std::to_array<FaultKind>({
    {Fault::zero_byte, "zero bytes", true},
    {Fault::columns, "wrong column counts", true},
    {Fault::order, "numbers out of order", true},
    {Fault::parent, "parents not numbers", true},
    {Fault::too_many_words, "sentences too long", true},
    {Fault::word_as_other_row, "words as other rows", true},
    {Fault::parent_outside, "parents outside", true},
    {Fault::cycle, "cycles of parents", true},
    {Fault::no_root_in_part, "parts without a root", true},
    {Fault::text_too_long, "texts too long", true},
    {Fault::compression, "compressed datafiles", false},
    {Fault::byte_order_mark, "byte order marks", false},
    {Fault::carriage_return, "line ends of CR LF", false},
    {Fault::not_utf8, "lines not in UTF-8", false},
    {Fault::blank_line, "lines of white space", false},
    {Fault::trailing_space, "trailing white space", false},
    {Fault::missing_empty_line, "missing empty lines", false},
    {Fault::extra_empty_line, "extra empty lines", false},
    {Fault::missing_last_line, "no empty line at end", false},
    {Fault::misplaced_comment, "misplaced comments", false},
    {Fault::empty_column, "empty columns", false},
    {Fault::misplaced_space, "misplaced spaces", false},
    {Fault::leading_zero, "leading zeros", false},
    {Fault::range, "ill-formed ranges", false},
    {Fault::empty_node, "ill-formed nodes", false},
});

constexpr bool _stand_in_order() {
  for (std::size_t i = 0; i < _kinds.size(); ++i)
    if (static_cast<std::size_t>(_kinds[i].fault) != i) return false;
  return _kinds.size() == fault_count;
}
static_assert(_stand_in_order());

}  // namespace

std::string_view fault_name(Fault fault) {
  return _kinds[static_cast<std::size_t>(fault)].name;
}

bool costs_sentence(Fault fault) {
  return _kinds[static_cast<std::size_t>(fault)].costs_sentence;
}

std::string FaultCounts::_part(std::string_view title, bool costly) const {
  std::string lines;
  std::uint64_t sum = 0;
  for (const FaultKind& kind : _kinds) {
    const std::uint64_t count = of(kind.fault);
    if (kind.costs_sentence != costly || count == 0) continue;
    sum += count;
    lines += fmt::format("  {:<22}{}\n", kind.name, count);
  }
  return sum == 0 ? "" : fmt::format("{:<24}{}\n{}", title, sum, lines);
}

std::string FaultCounts::text() const {
  return _part("faults that skip:", true) + _part("faults read over:", false);
}

}  // namespace colx
