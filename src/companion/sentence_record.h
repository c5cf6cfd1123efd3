#pragma once

// One line of a sentence file: where a sentence of a datafile comes from, and how it was written there. The form is
// described in docs/formats.md.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace colx {

// The first line of a sentence file, without its line feed.
inline constexpr std::string_view sentence_file_header = "# ngrex sentences 1";

// The most bytes of an identifier and of a text; what is longer is left out.
inline constexpr std::size_t longest_sentence_text = std::size_t{1} << 20;

// The most bytes of a line.
inline constexpr std::size_t longest_sentence_line = std::size_t{4} << 20;

// A sentence. All texts are views into what outlives the record.
struct SentenceRecord {
  std::string_view datafile;      // its path as a list has it
  std::uint64_t line = 0;         // of the first word in the datafile, from 1
  std::uint64_t words = 0;        // from 1
  std::string_view source;        // the path of the treebank as it was given; "-" is standard input
  std::uint64_t source_line = 0;  // of the first word in the treebank, from 1
  std::string_view id;            // empty: it has none
  std::string_view text;          // as it was written; empty: it is not known

  friend bool operator==(const SentenceRecord&, const SentenceRecord&) = default;
};

// Whether a path can stand in a sentence file: it has no TAB and no line end.
bool may_stand_in_sentence_file(std::string_view path);

// Appends a record as a line, with its line feed. Control characters of source, identifier and text become blanks,
// bytes that are no UTF-8 U+FFFD. The datafile must be one that may stand there.
void append_sentence_record(std::string& lines, const SentenceRecord& record);

// Takes a line, without its line feed, apart; the texts are views into it. Returns what is wrong with the line, and an
// empty text when all is well.
std::string parse_sentence_record(std::string_view line, SentenceRecord& record);

}  // namespace colx
