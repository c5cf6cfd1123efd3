#pragma once

// What the comments before a sentence of a treebank say of it.

#include <string>
#include <string_view>

namespace colx {

// The values of `# sent_id = ...` and `# text = ...`; the first of each kind counts.
struct SentenceComments {
  std::string id;    // empty: there is none
  std::string text;  // the same

  // Takes a line that begins with `#`, without its line end.
  void take(std::string_view comment);

  void clear() {
    id.clear();
    text.clear();
  }
};

}  // namespace colx
