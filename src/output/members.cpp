#include "output/members.h"

#include "base/config.h"
#include "corpus/dependencies.h"

namespace colx {

void _print_member(TextBuffer& out, const WordTexts& texts, std::uint32_t position, NGram::Member m) {
  // Positions and parents are single digits.
  static_assert(constants::max_grammity < 10);
  out << static_cast<char>('0' + position) << '\t' << texts.lemmas[m.lemma()] << '\t' << texts.tags[m.tag()] << '\t'
      << static_cast<char>('0' + m.parent()) << '\t' << dependency2cstring(m.dependency()) << '\n';
}

void _print_n_members(TextBuffer& out, const WordTexts& texts, const NGram& g) {
  unsigned next = 0;
  for (unsigned i = 0; i < settings::n; ++i) {
    if (NGram::significant(g.type(), i)) {
      _print_member(out, texts, i + 1, g.member(next++));
    } else {
      out << std::uint32_t{i + 1} << "\t*\n";
    }
  }
}

void _print_members(TextBuffer& out, const WordTexts& texts, const NGram& g) {
  for (unsigned i = 0; i < g.members_count(); ++i)
    _print_member(out, texts, i + 1, g.member(i));
}

}  // namespace colx
