#include "import/sentence_comments.h"

#include "corpus/datafile_format.h"

namespace colx {

namespace {

std::string_view _without_white_space_around(std::string_view text) {
  while (!text.empty() && is_white_space(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && is_white_space(text.back()))
    text.remove_suffix(1);
  return text;
}

}  // namespace

void SentenceComments::take(std::string_view comment) {
  comment.remove_prefix(1);
  const std::size_t sign = comment.find('=');
  if (sign == std::string_view::npos) return;
  const std::string_view key = _without_white_space_around(comment.substr(0, sign));
  std::string* const value = key == "sent_id" ? &id : key == "text" ? &text : nullptr;
  if (value != nullptr && value->empty()) *value = _without_white_space_around(comment.substr(sign + 1));
}

}  // namespace colx
