#include "corpus/dependencies.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace colx {
namespace {

// All names in the order of their codes, put together from the base names. "Head" and "Undef" have no variants.
std::vector<std::string> _names() {
  std::vector<std::string> names;
  for (const std::string base :
       {"Adv",   "AdvAtr", "Apos", "Atr",  "AtrAdv", "AtrAtr", "AtrObj", "Atv",  "AtvV", "Aux",  "AuxC",
        "AuxG",  "AuxK",   "AuxO", "AuxP", "AuxR",   "AuxS",   "AuxT",   "AuxV", "AuxX", "AuxY", "AuxZ",
        "Coord", "ExD",    "Head", "Obj",  "ObjAtr", "Pnom",   "Pred",   "Sb",   "Undef"}) {
    names.push_back(base);
    if (base == "Head" || base == "Undef") continue;
    for (const char* const suffix : {"_Ap", "_Co", "_Pa"})
      names.push_back(base + suffix);
  }
  return names;
}

TEST(Dependencies, NumberAllNamesInOrder) {
  const std::vector<std::string> names = _names();
  ASSERT_EQ(names.size(), 118U);
  ASSERT_EQ(dependencies_count, 118U);
  for (unsigned code = 0; code < 118; ++code) {
    EXPECT_EQ(dependency2cstring(static_cast<std::uint8_t>(code)), names[code]);
    EXPECT_EQ(string2dependency(names[code]), code) << names[code];
  }
}

TEST(Dependencies, HaveTheCodesThatRecordsAreMadeOf) {
  const std::map<std::string, unsigned> codes = {
      {"Adv", 0},    {"Adv_Ap", 1},  {"Adv_Co", 2},  {"Adv_Pa", 3}, {"AdvAtr", 4},  {"Apos", 8},     {"Atr", 12},
      {"Atv", 28},   {"AtvV", 32},   {"Aux", 36},    {"AuxC", 40},  {"AuxP", 56},   {"AuxZ_Pa", 87}, {"Coord", 88},
      {"ExD", 92},   {"ExD_Pa", 95}, {"Head", 96},   {"Obj", 97},   {"Obj_Co", 99}, {"ObjAtr", 101}, {"Pnom", 105},
      {"Pred", 109}, {"Sb", 113},    {"Sb_Pa", 116}, {"Undef", 117}};
  for (const auto& [name, code] : codes) {
    EXPECT_EQ(string2dependency(name), code) << name;
    EXPECT_EQ(dependency2cstring(static_cast<std::uint8_t>(code)), name);
  }
}

TEST(Dependencies, TakeUnknownNamesForUndef) {
  for (const char* const name : {"", "obj", "Obj_co", "OBJ", "Obj_", "Ob", "Obj_Co_Ap", " Obj", "Obj ", "Sb\r", "_Ap"})
    EXPECT_EQ(string2dependency(name), 117) << "'" << name << "'";
  EXPECT_EQ(string2dependency(std::string("Sb\0", 3)), 117);
}

TEST(Dependencies, GiveHeadAndUndefNoVariants) {
  for (const char* const name : {"Head_Ap", "Head_Co", "Head_Pa", "Undef_Ap", "Undef_Co", "Undef_Pa"})
    EXPECT_EQ(string2dependency(name), 117) << name;
  EXPECT_EQ(string2dependency("Head"), 96);
  EXPECT_EQ(string2dependency("Undef"), 117);
}

TEST(Dependencies, KnowTheSpecialCodesAfterTheFirstConversion) {
  string2dependency("Sb");
  EXPECT_EQ(dependency::head, 96);
  EXPECT_EQ(dependency::undef, 117);
}

TEST(Dependencies, MapEveryNameOnceWhenTheMapIsBuilt) {
  dependency::head = 0;
  dependency::undef = 0;
  const std::map<std::string, std::uint8_t> codes = _init_str2dep();
  EXPECT_EQ(dependency::head, 96);
  EXPECT_EQ(dependency::undef, 117);
  EXPECT_EQ(codes.size(), 118U);
  const std::vector<std::string> names = _names();
  for (unsigned code = 0; code < names.size(); ++code)
    EXPECT_EQ(codes.at(names[code]), code) << names[code];
}

}  // namespace
}  // namespace colx
