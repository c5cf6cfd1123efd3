#include "model/ngram_hash.h"

namespace colx {

namespace {

// How the members of a record share the 32 bits of its hash.
struct Layout {
  std::uint8_t bits_per_member;
  std::uint32_t lemma_bitmask;
  std::uint8_t dependency_bitmask;
  std::uint8_t parent_bitmask;
  std::uint8_t dp_shift;  // of dependency and parent
};

// By number of members.
constexpr Layout layouts[] = {
    {0, 0x0, 0x0, 0x0, 0},          //
    {32, 0xFFFFFF, 0x7C, 0x3, 24},  //
    {16, 0xFFF, 0xC, 0x3, 12},      //
    {11, 0xFF, 0x1C, 0x0, 6},       //
    {8, 0x3F, 0xC, 0x0, 4},         //
    {7, 0x3F, 0x4, 0x0, 4},         //
    {6, 0x3F, 0x0, 0x0, 0},         //
    {5, 0x1F, 0x0, 0x0, 0},         //
    {4, 0xF, 0x0, 0x0, 0},          //
};

constexpr std::uint32_t seed = 0xDEADBEEF;

template <typename MemberAt>
std::uint32_t _count_hash(unsigned members_count, const MemberAt& member_at) {
  const Layout& layout = layouts[members_count];
  std::uint32_t hash = seed;
  unsigned offset = 0;
  for (unsigned m = 0; m < members_count; ++m) {
    const NGram::Member member = member_at(m);
    const std::uint32_t dependency_and_parent =
        std::uint32_t(member.dependency() & layout.dependency_bitmask) | (member.parent() & layout.parent_bitmask);
    const std::uint32_t field = (dependency_and_parent << layout.dp_shift) | (member.lemma() & layout.lemma_bitmask);
    hash ^= field << (offset % 32);
    offset += layout.bits_per_member;
  }
  return hash;
}

}  // namespace

bool NGramHashCounter::check(unsigned n) {
  return n < sizeof layouts / sizeof *layouts;
}

std::uint32_t NGramHashCounter::count_hash(const NGram& record, unsigned members_count) {
  return _count_hash(members_count, [&](unsigned m) { return record.member(m); });
}

std::uint32_t NGramHashCounter::count_hash(std::span<const NGram::Member> members) {
  return _count_hash(static_cast<unsigned>(members.size()), [&](unsigned m) { return members[m]; });
}

}  // namespace colx
