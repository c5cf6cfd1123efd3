#include "concordance/line_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/support/random.h"
#include "tests/support/temporary_folder.h"

namespace colx::concordance {
namespace {

TEST(LineIndex, CountsTheLineEndsBeforeAByte) {
  auto random = test::Random();
  const test::TemporaryFolder folder;
  std::string text;
  while (text.size() < 300000)
    text += random.text(40, "ab") + "\n";
  const Descriptor file = open_for_reading(folder.write("text", text));
  LineIndex lines;
  for (int i = 0; i < 300; ++i) {
    // Blocks are of 65536 bytes.
    const std::uint64_t byte = random.once_in(4) ? 65536 * random.below(5) + random.below(3)
                                                 : random.below(static_cast<std::uint32_t>(text.size()));
    EXPECT_EQ(lines.line_of(file, "text", byte),
              1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(byte), '\n'));
  }
}

}  // namespace
}  // namespace colx::concordance
