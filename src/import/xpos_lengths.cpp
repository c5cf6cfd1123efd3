#include "import/xpos_lengths.h"

#include <algorithm>

#include <fmt/format.h>

#include "base/config.h"
#include "import/sentence.h"

namespace colx {

namespace {

constexpr std::uint64_t words_per_odd_tag = 1000;

// With more odd tags than both, there is no use in going on.
constexpr std::uint64_t enough_odd_tags = 100;
constexpr std::uint64_t words_per_odd_tag_at_the_end = 100;

bool _is_specified(std::string_view xpos) {
  return !xpos.empty() && xpos != "_";
}

}  // namespace

void XposLengths::add(std::string_view xpos, const std::string& input, std::uint64_t line) {
  const std::size_t length = _is_specified(xpos) ? xpos.size() : 0;
  if (_last == nullptr || length != _last_length) {
    _last = &_groups[length];
    _last_length = length;
  }
  if (++_last->words == 1) {
    _last->first = _words;
    _last->tag = xpos;
    _last->place = fmt::format("{}:{}", input, line);
  }
  ++_words;
}

std::size_t XposLengths::_common() const {
  std::size_t common = 0;
  std::uint64_t most = 0;
  for (const auto& [length, group] : _groups) {
    if (length == 0 || group.words <= most) continue;
    common = length;
    most = group.words;
  }
  return common;
}

std::uint64_t XposLengths::_odd() const {
  const auto common = _groups.find(_common());
  return _words - (common == _groups.end() || common->first == 0 ? 0 : common->second.words);
}

bool XposLengths::decided() const {
  const std::uint64_t odd = _odd();
  return odd > enough_odd_tags && odd * words_per_odd_tag_at_the_end > _words;
}

std::size_t XposLengths::positional_length() const {
  return _odd() * words_per_odd_tag <= _words ? _common() : 0;
}

std::string XposLengths::refusal() const {
  const std::size_t common = _common();
  if (common == 0) return "XPOS is not taken: no word has one";
  const Group* first = nullptr;
  for (const auto& [length, group] : _groups)
    if (length != common && (first == nullptr || group.first < first->first)) first = &group;
  if (first == nullptr) return "";
  return fmt::format(
      "XPOS is not taken: expected tags of length {}, found {} at {}; of the first {} words {} have "
      "no tag of that length",
      common, in_quotes(first->tag), first->place, _words, _odd());
}

std::string brought_to_length(std::string_view xpos, std::size_t length) {
  std::string tag(_is_specified(xpos) ? xpos.substr(0, length) : "");
  if (xpos.size() > length) {
    std::size_t end = length;
    while (end > 0 && (static_cast<unsigned char>(xpos[end]) & 0xC0U) == 0x80)
      --end;
    tag.resize(end);
  }
  tag.resize(length, constants::insignificant_position_mark);
  return tag;
}

}  // namespace colx
