// Members as numbers of 32 bits, and back.

#include "scale/counting/member_code.h"

#include <gtest/gtest.h>

#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx::scale {
namespace {

TEST(MemberCode, GivesEveryMemberBack) {
  const test::SettingsGuard settings{4};
  test::Random random;
  for (const auto& [lemmas, tags] : {std::pair{1U, 1U}, {1U, 254U}, {70000U, 100U}, {7279605U, 1U}}) {
    const MemberCode code(lemmas, tags);
    ASSERT_TRUE(code.fits());
    for (int i = 0; i < 1000; ++i) {
      const bool last = i == 0;
      const auto one_of = [&](unsigned count) { return last ? count - 1 : random.below(count); };
      const NGram::Member member(one_of(lemmas), static_cast<std::uint8_t>(one_of(tags)),
                                 static_cast<std::uint8_t>(one_of(5)),
                                 static_cast<std::uint8_t>(one_of(dependencies_count)));
      EXPECT_EQ(code.member(code.code(member)), member);
    }
  }
}

TEST(MemberCode, FitsUpTo32Bits) {
  const test::SettingsGuard settings{4};
  EXPECT_TRUE(MemberCode(0, 0).fits());
  EXPECT_TRUE(MemberCode(7279605, 1).fits());  // times 5 places of the parent and 118 relations
  EXPECT_FALSE(MemberCode(7279606, 1).fits());
  EXPECT_FALSE(MemberCode(1 << 24, 254).fits());
}

}  // namespace
}  // namespace colx::scale
