#include "import/foreign_format.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "companion/utf8.h"
#include "corpus/datafile_format.h"
#include "import/conll_columns.h"
#include "import/sentence.h"
#include "import/treebank_format.h"

namespace colx {

namespace {

using namespace std::string_view_literals;

struct Signature {
  std::size_t at;
  std::string_view bytes;
  std::string_view found;
  std::string_view advice;
};

constexpr std::array _signatures = std::to_array<Signature>({
    {0, "\xFD\x37zXZ\0"sv, "data compressed with xz", "xz -dc FILE | ngrex-import reads what is in them"},
    {0, "BZh"sv, "data compressed with bzip2", "bzip2 -dc FILE | ngrex-import reads what is in them"},
    {0, "\x28\xB5\x2F\xFD"sv, "data compressed with zstd", "zstd -dc FILE | ngrex-import reads what is in them"},
    {0, "\x1F\x8B"sv, "data compressed twice", "gzip -dc FILE | ngrex-import reads what is in them"},
    {0, "PK\x03\x04"sv, "a zip archive", "unzip -p FILE '*.conllu' | ngrex-import reads the treebanks in it"},
    {0, "7z\xBC\xAF\x27\x1C"sv, "a 7z archive", "7z x FILE unpacks it"},
    {257, "ustar"sv, "a tar archive", "tar -xf FILE unpacks it"},
    {0, "\xFF\xFE\0\0"sv, "text in UTF-32", "iconv -f UTF-32 -t UTF-8 FILE | ngrex-import reads it"},
    {0, "\0\0\xFE\xFF"sv, "text in UTF-32", "iconv -f UTF-32 -t UTF-8 FILE | ngrex-import reads it"},
    {0, "\xFF\xFE"sv, "text in UTF-16", "iconv -f UTF-16 -t UTF-8 FILE | ngrex-import reads it"},
    {0, "\xFE\xFF"sv, "text in UTF-16", "iconv -f UTF-16 -t UTF-8 FILE | ngrex-import reads it"},
});

// Zero bytes at most places of one parity are the halves of characters.
std::optional<ForeignFormat> _zero_bytes(std::string_view beginning) {
  const std::string_view bytes = beginning.substr(0, 512);
  std::array<std::size_t, 2> zeros{};
  for (std::size_t i = 0; i < bytes.size(); ++i)
    if (bytes[i] == '\0') ++zeros[i % 2];
  if (bytes.size() < 16 || (zeros[0] + zeros[1]) * 10 < bytes.size()) return std::nullopt;
  for (const std::size_t parity : {0U, 1U}) {
    if (zeros[parity] * 4 < bytes.size() || zeros[1 - parity] * 20 > bytes.size()) continue;
    const char* const encoding = parity == 0 ? "UTF-16BE" : "UTF-16LE";
    return ForeignFormat{fmt::format("text in {}", encoding),
                         fmt::format("iconv -f {} -t UTF-8 FILE | ngrex-import reads it", encoding)};
  }
  return ForeignFormat{"binary data", "text is read, and text compressed with gzip"};
}

std::vector<std::string_view> _names_behind(std::string_view line, std::string_view key) {
  std::vector<std::string_view> names;
  line.remove_prefix(std::min(line.find(key), line.size()));
  line.remove_prefix(std::min(key.size(), line.size()));
  while (!line.empty()) {
    const std::size_t end = std::min(line.find_first_of(" \t\r="), line.size());
    if (end > 0) names.push_back(line.substr(0, end));
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  return names;
}

bool _begins_like_conllu(const std::vector<std::string_view>& names) {
  return names.size() >= 10 && std::equal(conll_columns.begin() + 1, conll_columns.end(), names.begin());
}

// Rows that have only the columns of CoNLL-U may stand below the names of more.
std::optional<ForeignFormat> _other_columns(std::string_view names_line, std::size_t count) {
  const auto names = _names_behind(names_line, "global.columns");
  const bool begins_like_conllu = _begins_like_conllu(names);
  if (names.empty() || (begins_like_conllu && count == 10)) return std::nullopt;
  if (begins_like_conllu)
    return ForeignFormat{fmt::format("CoNLL-U Plus (.cupt and others) with the column {} behind those of CoNLL-U",
                                     fmt::join(names.begin() + 10, names.end(), ", ")),
                         "cut -f1-10 FILE | ngrex-import reads those of CoNLL-U"};
  return ForeignFormat{
      fmt::format("CoNLL-U Plus with the columns {}", in_quotes(fmt::to_string(fmt::join(names, " ")))),
      "it can be read when it has the ten columns of CoNLL-U: ID FORM LEMMA UPOS XPOS FEATS HEAD DEPREL DEPS MISC"};
}

// Which columns are _ in every row of a word.
class Underscores {
 public:
  void add(const std::string_view (&columns)[10]) {
    ++_rows;
    for (std::size_t column = 0; column < 10; ++column)
      _everywhere[column] = _everywhere[column] && columns[column] == "_";
  }

  std::optional<ForeignFormat> judgement() const {
    // Some texts do have a line of low lines.
    constexpr std::size_t enough = 5;
    if (_rows >= enough && _everywhere[1] && _everywhere[2])
      return ForeignFormat{"words without text: FORM and LEMMA are _ in every row",
                           "such treebanks are distributed without their text, which has to be put in first"};
    if (_rows == 0 || !_everywhere[6]) return std::nullopt;
    std::vector<const char*> empty;
    for (const std::size_t column : {2U, 3U, 6U, 7U})
      if (_everywhere[column]) empty.push_back(conll_columns.at(column + 1));
    return ForeignFormat{fmt::format("words without a tree: _ in every row as {}", fmt::join(empty, ", ")),
                         "the text has to be parsed first"};
  }

 private:
  std::array<bool, 10> _everywhere{true, true, true, true, true, true, true, true, true, true};
  std::size_t _rows = 0;
};

// Whether the first lines have characters that no text has, or bytes that are not UTF-8.
bool _is_no_text(std::string_view beginning) {
  std::string_view lines = beginning.substr(0, 1024);
  lines = lines.substr(0, lines.find_last_of('\n'));  // the last one may be cut within a character
  return !is_utf8(lines) || std::any_of(lines.begin(), lines.end(), [](char c) {
    return static_cast<unsigned char>(c) < ' ' && !is_white_space(c);
  });
}

bool _is_page(std::string_view beginning) {
  std::string small(beginning.substr(0, 1024));
  std::transform(small.begin(), small.end(), small.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return small.find("<html") != std::string::npos || small.find("<!doctype html") != std::string::npos;
}

}  // namespace

std::optional<ForeignFormat> foreign_bytes(std::string_view beginning) {
  for (const Signature& signature : _signatures)
    if (beginning.size() > signature.at && beginning.substr(signature.at).starts_with(signature.bytes))
      return ForeignFormat{std::string(signature.found), std::string(signature.advice)};
  return _zero_bytes(beginning);
}

std::optional<ForeignFormat> foreign_rows(std::string_view beginning) {
  const std::size_t carriage_return = beginning.find('\r');
  if (beginning.find('\n') == std::string_view::npos && carriage_return != std::string_view::npos &&
      carriage_return + 1 < beginning.size())
    return ForeignFormat{"lines that end with CR alone", "tr '\\r' '\\n' < FILE | ngrex-import reads them"};
  Underscores underscores;
  std::string_view names;
  bool any_row = false;
  std::string_view columns[10];
  for (PreviewLines lines(beginning); lines.next();) {
    if (lines.is_comment()) {
      if (!any_row && lines.line().find("global.columns") != std::string_view::npos) names = lines.line();
      continue;
    }
    const std::size_t count = split_columns(lines.line(), columns);
    if (!any_row && !names.empty()) {
      if (auto other = _other_columns(names, count)) return other;
    }
    // The last line may be cut.
    if (any_row && !lines.is_whole()) break;
    any_row = true;
    if (count == 10 && row_kind(columns[0]) == RowKind::word) underscores.add(columns);
  }
  return underscores.judgement();
}

ForeignFormat guess_of_unrecognised(std::string_view beginning) {
  const std::string row = describe_first_row(beginning);
  PreviewLines lines(beginning);
  while (lines.next() && lines.is_comment()) {
  }
  std::string_view columns[10];
  const std::size_t count = split_columns(lines.line(), columns);
  if (lines.line().starts_with('<')) {
    if (_is_page(beginning)) return {"a page of HTML", "it may have been saved in place of the file that it shows"};
    return {"XML or another text with markup", "it has to be turned into CoNLL-U first"};
  }
  const bool numbered = row_kind(columns[0]) != RowKind::malformed;
  if (numbered && count >= 14)
    return {"rows as in CoNLL-2009, " + row, "its columns 1, 2, 3, 5, 5, 7, 9, 11 and two of _ make CoNLL-X"};
  if (numbered && count > 10)
    return {"rows of more columns than CoNLL-U (.cupt and others), " + row,
            "cut -f1-10 FILE | ngrex-import reads the first ten"};
  std::string_view fields[6];
  if (count == 1 && split_fields(lines.line(), fields) == 10 && row_kind(fields[0]) != RowKind::malformed)
    return {"ten columns that are not separated by TAB, " + row, "sed 's/  */\\t/g' FILE | ngrex-import reads them"};
  if (count == 1 && _is_no_text(beginning))
    return {"binary data or text that is not in UTF-8, " + row,
            "text in UTF-8 is read, and such text compressed with gzip"};
  if (count == 1) return {"plain text, " + row, "it has to be parsed first, and the result saved as CoNLL-U"};
  return {"other rows, " + row, "they have to be turned into CoNLL-U first"};
}

}  // namespace colx
