#include "output/members.h"

#include "corpus/dependencies.h"
#include "corpus/persistent.h"
#include "run/config.h"

namespace colx {

void _print_member(std::ostream& os, std::uint8_t position, const NGram::Member& m) {
  os << unsigned{position} << '\t' << persistent::lemmas[m.lemma()] << '\t' << persistent::tags[m.tag()] << '\t'
     << unsigned{m.parent()} << '\t' << dependency2cstring(m.dependency()) << '\n';
}

void _print_n_members(std::ostream& os, const NGram& g) {
  const NGram::Member* member = g.members();
  for (std::uint8_t i = 0; i < settings::n; ++i) {
    const auto position = static_cast<std::uint8_t>(i + 1);
    if (NGram::significant(g.type(), i)) {
      _print_member(os, position, *member++);
    } else {
      os << unsigned{position} << "\t*\n";
    }
  }
}

void _print_members(std::ostream& os, const NGram& g) {
  for (std::uint8_t i = 0; i < g.members_count(); ++i) {
    _print_member(os, static_cast<std::uint8_t>(i + 1), g.members()[i]);
  }
}

}  // namespace colx
