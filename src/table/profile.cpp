#include "table/profile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "companion/errors.h"
#include "companion/utf8.h"
#include "rows/condition.h"
#include "table/table_run.h"

namespace colx::table {

namespace {

constexpr int digits_of_scores = 4;
constexpr std::uint64_t usual_rows = 10;
constexpr std::size_t most_columns = 5;

using Line = std::array<std::string, most_columns>;  // as it is shown

struct ProfileRow {
  std::string key;  // which decides about its place, then the member lines
  Line line;
};

struct ProfileBlock {
  std::uint64_t frequency = 0;
  std::size_t size = 0;  // rows before it was cut
  std::vector<ProfileRow> rows;
};

std::string _counted(std::uint64_t count, std::string_view one) {
  return fmt::format("{} {}{}", count, one, count == 1 ? "" : "s");
}

// What the rows are ordered by is shown, unless that is shown anyway.
Column _score(const SortOrder& order) {
  for (const SortKey& key : order.keys)
    if (!key.column.is_text() && key.column.quantity != Quantity::frequency) return key.column;
  return *find_column("logDice");
}

class Profile {
 public:
  Profile(const Options& options, Output& output, bool bold)
      : _options(options),
        _output(output),
        _bold(bold),
        _order(options.sort.value_or(parse_sort_order("logDice"))),
        _score_column(_score(_order)) {
    std::string note;  // which has been told
    _lemma = as_compared(as_lemma(*options.profile, note), options.letters);
  }

  void begin(std::size_t n) {
    check_for_n(_options, n);
    check_column(_score_column, n);
  }

  void add(const Block& block) {
    Style style = _options.style;
    style.precision = digits_of_scores;
    for (std::size_t k = 0; k < block.n; ++k) {
      if (as_compared(block.members[k].lemma, _options.letters) != _lemma) continue;
      const Row row(block, 1, style);
      if (!is_chosen(_options, row)) return;
      ProfileBlock& of_title = _blocks[_title(block, k)];
      of_title.frequency += row.contingency.frequency;
      of_title.rows.push_back({_key(row), _line(row, k)});
    }
  }

  void end() {
    if (_blocks.empty())
      throw input_error(fmt::format("no N-gram that is asked for has the lemma \"{}\"", printable(_lemma)));
    std::vector<std::pair<const std::string, ProfileBlock>*> blocks;
    for (auto& block : _blocks)
      blocks.push_back(&block);
    std::stable_sort(blocks.begin(), blocks.end(),
                     [](const auto* a, const auto* b) { return a->second.frequency > b->second.frequency; });
    const Line header = {"collocate", "tag", "frequency", _score_column.name, "pattern"};
    _measure(header);
    for (auto* const block : blocks)
      _cut(block->second);
    _write(header);
    for (const auto* const block : blocks) {
      _output << fmt::format("\n{}{} ({}, {}){}\n", _bold ? "\x1b[1m" : "", block->first,
                             _counted(block->second.size, "row"), _counted(block->second.frequency, "occurrence"),
                             _bold ? "\x1b[0m" : "");
      for (const ProfileRow& row : block->second.rows)
        _write(row.line);
    }
    _output.flush();
  }

 private:
  std::string _title(const Block& block, std::size_t k) const {
    const std::string word = printable(_lemma);
    if (block.n == 2) {
      const bool is_head = block.members[k].parent == 0;
      const std::string relation = printable(block.members[is_head ? 1 - k : k].relation);
      return is_head ? fmt::format("{} as head: what is {} of it", word, relation)
                     : fmt::format("{} as dependent: of what it is {}", word, relation);
    }
    Block shape = block;
    for (std::size_t i = 0; i < block.n; ++i)
      shape.members[i].lemma = i == k ? std::string_view(_lemma) : "*";
    std::string text;
    write_tree_text(shape, text);
    return printable(text);
  }

  std::string _key(const Row& row) const {
    std::string key;
    append_key(_order, row, key);
    return key.append(row.block.text.substr(0, row.block.members_size));
  }

  // Collocates and their tags are those of all other words.
  Line _line(const Row& row, std::size_t k) const {
    Line line;
    for (std::size_t i = 0; i < row.block.n; ++i) {
      if (i == k) continue;
      const std::string_view gap = line[0].empty() ? "" : " ";
      line[0].append(gap).append(printable(row.block.members[i].lemma));
      line[1].append(gap).append(printable(row.block.members[i].tag));
    }
    line[2] = std::to_string(row.contingency.frequency);
    std::string scratch;
    line[3] = text_of(field_of(_score_column, row, scratch));
    write_tree_text(row.block, scratch);
    line[4] = printable(scratch);
    return line;
  }

  // Puts the rows of a block in order, leaves the first ones and makes room for them.
  void _cut(ProfileBlock& block) {
    block.size = block.rows.size();
    std::stable_sort(block.rows.begin(), block.rows.end(),
                     [](const ProfileRow& a, const ProfileRow& b) { return a.key < b.key; });
    block.rows.resize(std::min<std::uint64_t>(block.rows.size(), _options.top.value_or(usual_rows)));
    for (const ProfileRow& row : block.rows)
      _measure(row.line);
  }

  void _measure(const Line& line) {
    for (std::size_t i = 0; i < line.size(); ++i)
      _widths[i] = std::max(_widths[i], display_width(line[i]));
  }

  // Numbers stand to the right, and nothing behind the last column.
  void _write(const Line& line) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      const bool is_number = i == 2 || i == 3;
      const std::string gap(_widths[i] - display_width(line[i]), ' ');
      _output << "  ";
      if (is_number) _output << gap;
      _output << line[i];
      if (!is_number && i + 1 < line.size()) _output << gap;
    }
    _output << '\n';
    _output.end_row();
  }

  const Options& _options;
  Output& _output;
  bool _bold;
  SortOrder _order;
  Column _score_column;
  std::string _lemma;
  std::map<std::string, ProfileBlock> _blocks;  // by their titles
  std::array<std::size_t, most_columns> _widths{};
};

}  // namespace

void write_profile(const Options& options, BlockSource& source, Output& output, bool bold) {
  Profile profile(options, output, bold);
  Block block;
  bool begun = false;
  while (source.next(block)) {
    if (!std::exchange(begun, true)) profile.begin(block.n);
    profile.add(block);
  }
  profile.end();
}

}  // namespace colx::table
