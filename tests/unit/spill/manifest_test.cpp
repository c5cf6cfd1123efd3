// Manifests come back as they were saved.

#include "spill/manifest.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "spill/damaged_file.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

std::string manifest_text(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ManifestTest, KeepsFieldsWhateverTheyHold) {
  const test::TemporaryFolder folder;
  const std::string path = folder.path("manifest");
  Manifest manifest;
  manifest.add({"path", "a\tb\nc%d%09", "", "\x01\xff"});
  manifest.add("number", 18446744073709551615U);
  manifest.add({"path", "second"});
  manifest.save(path);
  EXPECT_TRUE(
      manifest_text(path).starts_with("path\ta%09b%0ac%25d%2509\t\t%01\xff\n"
                                      "number\t18446744073709551615\npath\tsecond\nchecksum\t4\t"));
  const std::optional<Manifest> loaded = Manifest::load(path);
  ASSERT_TRUE(loaded.has_value());
  EXPECT_EQ(loaded->lines(), manifest.lines());
  EXPECT_EQ(loaded->mark(), manifest.mark());
  EXPECT_EQ(Manifest::mark_of(path), manifest.mark());
  EXPECT_EQ(loaded->number("number"), 18446744073709551615U);
  EXPECT_EQ(loaded->text("path"), "a\tb\nc%d%09");
  EXPECT_EQ(loaded->all("path").size(), 2U);
  EXPECT_EQ(loaded->find("other"), nullptr);
  EXPECT_THROW(loaded->text("other"), std::out_of_range);
}

TEST(ManifestTest, OfAnotherVersionIsRefused) {
  const test::TemporaryFolder folder;
  const std::string path = folder.path("manifest");
  Manifest manifest;
  manifest.add({"key", "value"});
  manifest.save(path);
  const std::string whole = manifest_text(path);
  const std::string ours = "checksum\t4\t";
  for (const std::string other : {"checksum\t", "checksum\t3\t", "checksum\t41\t"}) {
    std::string text = whole;
    folder.write("manifest", text.replace(text.find(ours), ours.size(), other));
    try {
      Manifest::load(path);
      ADD_FAILURE() << other;
    } catch (const damaged_file& error) {
      EXPECT_TRUE(std::string(error.what()).ends_with("is of another version")) << error.what();
    }
    EXPECT_THROW(Manifest::mark_of(path), damaged_file) << other;
  }
}

TEST(ManifestTest, ThatIsMissingIsNothingAndADamagedOneIsRefused) {
  const test::TemporaryFolder folder;
  const std::string path = folder.path("manifest");
  EXPECT_FALSE(Manifest::load(path).has_value());
  EXPECT_FALSE(Manifest::mark_of(path).has_value());
  Manifest manifest;
  manifest.add({"key", "value"});
  manifest.save(path);
  const std::string whole = manifest_text(path);
  for (std::size_t i = 0; i < whole.size(); ++i) {
    folder.write("manifest", whole.substr(0, i));
    EXPECT_THROW(Manifest::load(path), damaged_file) << "cut to " << i;
    std::string turned = whole;
    turned[i] = static_cast<char>(turned[i] ^ 1);
    folder.write("manifest", turned);
    EXPECT_THROW(Manifest::load(path), damaged_file) << "byte " << i;
    EXPECT_THROW(Manifest::mark_of(path), damaged_file) << "byte " << i;
  }
}

}  // namespace
}  // namespace colx
