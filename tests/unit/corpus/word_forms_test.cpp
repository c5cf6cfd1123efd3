#include "corpus/word_forms.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/random.h"

namespace colx {
namespace {

TEST(WordForms, AgreesWithAListOfTexts) {
  test::Random random;
  WordForms forms;
  std::vector<std::string> plain;
  for (int round = 0; round < 5000; ++round) {
    if (random.once_in(10)) {
      const std::uint32_t count = random.below(static_cast<std::uint32_t>(plain.size()) + 1);
      forms.drop_back(count);
      plain.resize(plain.size() - count);
    } else if (random.once_in(50)) {
      forms.clear();
      plain.clear();
    } else {
      plain.push_back(random.text(9, "ab\xC3\xA9"));
      forms.push_back(plain.back());
    }
    ASSERT_EQ(forms.size(), plain.size());
    for (std::size_t i = 0; i < plain.size(); ++i)
      ASSERT_EQ(forms[i], plain[i]);
  }
}

}  // namespace
}  // namespace colx
