#include "companion/sentence_record.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

#include <fmt/format.h>

#include "companion/utf8.h"

namespace colx {

namespace {

constexpr std::size_t field_count = 7;
constexpr std::array<std::string_view, field_count> field_names = {
    "datafile", "line", "number of words", "treebank", "line of treebank", "id", "text"};

bool _is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == '\x7F';
}

// Appends a text that cannot be taken for the end of a field.
void _append_clean(std::string& line, std::string_view text) {
  const std::size_t begin = line.size();
  line += is_utf8(text) ? text : std::string_view(as_utf8(text));
  if (line.size() - begin > longest_sentence_text) line.resize(begin);
  std::replace_if(line.begin() + static_cast<std::ptrdiff_t>(begin), line.end(), _is_control, ' ');
}

bool _parse_number(std::string_view text, std::uint64_t& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number > 0;
}

}  // namespace

bool may_stand_in_sentence_file(std::string_view path) {
  return path.find_first_of("\t\n") == std::string_view::npos;
}

void append_sentence_record(std::string& lines, const SentenceRecord& record) {
  lines += record.datafile;
  lines += fmt::format("\t{}\t{}\t", record.line, record.words);
  _append_clean(lines, record.source);
  lines += fmt::format("\t{}\t", record.source_line);
  _append_clean(lines, record.id);
  lines += '\t';
  _append_clean(lines, record.text);
  lines += '\n';
}

std::string parse_sentence_record(std::string_view line, SentenceRecord& record) {
  std::array<std::string_view, field_count> fields;
  std::size_t count = 0;
  for (std::size_t begin = 0; begin <= line.size(); ++count) {
    const std::size_t end = std::min(line.find('\t', begin), line.size());
    if (count < field_count) fields[count] = line.substr(begin, end - begin);
    begin = end + 1;
  }
  if (count != field_count) return fmt::format("expected {} fields separated by TAB, found {}", field_count, count);
  record.datafile = fields[0];
  record.source = fields[3];
  record.id = fields[5];
  record.text = fields[6];
  std::uint64_t* const numbers[] = {nullptr, &record.line, &record.words, nullptr, &record.source_line};
  for (const std::size_t i : {1U, 2U, 4U})
    if (!_parse_number(fields[i], *numbers[i]))
      return fmt::format("expected a number from 1 as {}, found \"{}\"", field_names[i],
                         printable(fields[i].substr(0, 40)));
  if (record.datafile.empty()) return "expected the path of a datafile, found nothing";
  return "";
}

}  // namespace colx
