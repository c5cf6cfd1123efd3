#include "import/import_options.h"

#include <gtest/gtest.h>

#include <string>

#include "companion/errors.h"

namespace colx {
namespace {

TEST(ImportOptions, TakesTheLastOfRepeatedOptionsAndValuesThatLookLikeOptions) {
  const ImportSettings settings = parse_import_options({"--protect-lemmas", "--no-protect-lemmas", "--tag", "xpos",
                                                        "--tag", "upos", "--mask", "-*-", "-o", "-", "--", "-x"});
  EXPECT_EQ(settings.protect_lemmas, false);
  EXPECT_EQ(settings.tag, TagSource::upos);
  EXPECT_EQ(settings.mask, "-*-");
  EXPECT_EQ(settings.output, "");
  EXPECT_EQ(settings.inputs, std::vector<std::string>{"-x"});
}

TEST(ImportOptions, AnswersTheFirstQuestionAndNothingElse) {
  EXPECT_EQ(parse_import_options({"--quiet", "--version", "--help", "--tag", "nothing"}).information,
            version(import_program));
}

TEST(ImportOptions, RefusesWhatDoesNotGoTogether) {
  EXPECT_THROW(parse_import_options({"--check", "-o", "x"}), usage_error);
  EXPECT_THROW(parse_import_options({"--split", "3"}), usage_error);
  EXPECT_THROW(parse_import_options({"--list", "x"}), usage_error);
  EXPECT_THROW(parse_import_options({"--list", "x", "-o", "a\nb"}), usage_error);
  EXPECT_THROW(parse_import_options({"--check", "--sentences", "x"}), usage_error);
  EXPECT_THROW(parse_import_options({"--sentences", "x"}), usage_error);
  EXPECT_THROW(parse_import_options({"--sentences", "x", "-o", "x"}), usage_error);
  EXPECT_THROW(parse_import_options({"--sentences", "-", "-o", "x"}), usage_error);
  EXPECT_THROW(parse_import_options({"--sentences", "x", "-o", "a\tb"}), usage_error);
  EXPECT_THROW(parse_import_options({"-", "-"}), usage_error);
}

}  // namespace
}  // namespace colx
