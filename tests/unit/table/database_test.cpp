#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "companion/errors.h"
#include "table/database.h"
#include "table/table.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

const std::string pair = "1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t1\n-nan\tinf\t0.8\t0.3\t0.4\t0.5\n\n";

// Writes a database as the program would, and asks whether a condition of SQL holds in it.
class DatabaseTest : public testing::Test {
 protected:
  // The last argument may be an option that takes the input as its value.
  void make(std::vector<std::string> arguments, const std::string& content = pair + "\n") {
    arguments.insert(arguments.end(), {_folder.write("in", content), "--format=sqlite", "-o", _path});
    ASSERT_EQ(run(arguments), 0);
  }

  // A value that is not true makes the statement fail, and so does no value at all.
  bool holds(const std::string& condition) const {
    std::filesystem::copy_file(_path, _folder.path("copy"), std::filesystem::copy_options::overwrite_existing);
    const NewFile scratch(_folder.path("scratch"));
    Database database(scratch);
    try {
      // Nothing can be attached within a transaction.
      database.run("COMMIT; ATTACH '" + _folder.path("copy") +
                   "' AS made; CREATE TABLE truth (value CHECK (value IS TRUE));" + "INSERT INTO truth SELECT " +
                   condition + "; INSERT INTO truth SELECT EXISTS (SELECT * FROM truth)");
      return true;
    } catch (const output_error&) {
      return false;
    }
  }

 private:
  test::TemporaryFolder _folder;
  std::string _path = _folder.path("made");
};

TEST_F(DatabaseTest, KeepsWhatIsKnownOfAnNGram) {
  make({"--measures=MI"});
  EXPECT_TRUE(holds("count(*) = 1 FROM ngrams WHERE id = 1 AND frequency = 1 AND total = 7 AND MI = 0.8073549221"));
  EXPECT_TRUE(holds("chi_square IS NULL AND log_likelihood = 9e999 AND per_million = 142857.1429 FROM ngrams"));
  EXPECT_TRUE(
      holds("tag = 'N' AND parent = 0 AND relation = 'Head' AND marginal = 2 FROM members WHERE lemma = 'rain'"));
  EXPECT_TRUE(holds("observed = 4 FROM cells WHERE ngram = 1 AND cell = 0"));
  EXPECT_TRUE(holds("count(*) = 4 FROM cells"));
  EXPECT_FALSE(holds("count(*) = 3 FROM cells"));
  EXPECT_TRUE(holds("value = 7 FROM about WHERE key = 'total'"));
  EXPECT_TRUE(holds(
      "value LIKE 'ngrex-table --measures=MI /%/in --format=sqlite -o /%' FROM about WHERE key = 'command_line'"));
}

TEST_F(DatabaseTest, HasTheMeasuresThatAreNamedInPlaceOfTheDefaultOnes) {
  make({"--columns=MI,lemma", "--pattern"});
  EXPECT_TRUE(holds("count(*) = 7 FROM pragma_table_info('ngrams', 'made')"));
  EXPECT_TRUE(holds("pattern = 'heavy <Atr rain' FROM ngrams"));
  EXPECT_TRUE(holds("count(*) = 2 FROM members WHERE marginal = 2"));
}

TEST_F(DatabaseTest, HasTheRowsOfTheTableInItsOrder) {
  std::string second = pair;
  second.replace(second.find("heavy"), 5, "light");
  make({"--sort=+lemma1", "--top=1", "--where=lemma1!=heavy"}, pair + second + "\n");
  EXPECT_TRUE(
      holds("lemma = 'light' AND (SELECT count(*) FROM ngrams) = 1 FROM members WHERE ngram = 1 AND position = 1"));
}

TEST_F(DatabaseTest, HasItsTablesWithoutNGramsToo) {
  make({}, "\n");
  EXPECT_TRUE(
      holds("(SELECT count(*) FROM ngrams) + (SELECT count(*) FROM members) + (SELECT count(*) FROM cells) = 0"));
  EXPECT_TRUE(holds("value = 0 FROM about WHERE key = 'rows'"));
}

TEST_F(DatabaseTest, HasOneTableOfContexts) {
  make({"--contexts"}, "1\tcold\tA\t2\tAtr\n2\train\t\t0\tHead\n\nfall\tV\t1\n\nrain\tN\t3\nfall\tV\t2\n\n\n\n");
  EXPECT_TRUE(holds("count(*) = 3 AND sum(frequency) = 6 FROM contexts WHERE lemma1 = 'cold'"));
  EXPECT_TRUE(holds("value LIKE 'ngrex-table --contexts %' FROM about WHERE key = 'command_line'"));
  EXPECT_TRUE(holds("count(*) = 2 FROM made.sqlite_schema WHERE type = 'table'"));
}

TEST_F(DatabaseTest, TextsAreUtf8) {
  std::string broken = pair;
  broken.replace(broken.find("heavy"), 5, "a\xFF\xC3\xA9");
  make({}, broken + "\n");
  EXPECT_TRUE(holds("lemma = 'a' || char(0xFFFD, 0xE9) FROM members WHERE position = 1"));
}

TEST(Database, NeedsARegularFile) {
  const test::TemporaryFolder folder;
  const std::string input = folder.write("in", pair + "\n");
  EXPECT_THROW(run({"--format=sqlite", input}), usage_error);
  EXPECT_THROW(run({"--format=sqlite", "-o", folder.path(), input}), output_error);
  EXPECT_THROW(run({"--format=sqlite", "--na=x", "-o", folder.path("out"), input}), usage_error);
  EXPECT_FALSE(std::filesystem::exists(folder.path("out")));
}

}  // namespace
}  // namespace colx::table
