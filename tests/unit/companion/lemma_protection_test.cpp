#include "companion/lemma_protection.h"

#include <gtest/gtest.h>

#include <string>

#include "corpus/datafile_format.h"

namespace colx {
namespace {

TEST(LemmaProtection, ReplacesTheFiveCharactersAndNothingElse) {
  EXPECT_EQ(protect_lemma("don't"), "don\xE2\x80\x99t");
  EXPECT_EQ(protect_lemma("a:b;c^d_e"),
            "a\xEA\x9E\x89"
            "b\xE2\x81\x8F"
            "c\xCB\x86"
            "d\xCB\x8D"
            "e");
  EXPECT_EQ(protect_lemma("na\xC3\xAFve-\"x\""), "na\xC3\xAFve-\"x\"");
}

TEST(LemmaProtection, LeavesNothingAtWhichALemmaIsCut) {
  for (int c = 1; c < 256; ++c) {
    const std::string protected_lemma = protect_lemma(std::string("x") + static_cast<char>(c));
    EXPECT_EQ(kept_lemma(protected_lemma), protected_lemma) << c;
  }
}

}  // namespace
}  // namespace colx
