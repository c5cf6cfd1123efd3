#include "report/column.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "report/packed_columns.h"

namespace colx::report {
namespace {

using Words = std::vector<std::uint32_t>;
using Counts = std::vector<std::uint64_t>;

TEST(Columns, TakeNoMoreBytesThanTheirNumbersNeed) {
  EXPECT_EQ(type_name({"tag1", narrowed({0, 65535})}), "u16");
  EXPECT_EQ(type_name({"tag1", narrowed({0, 65536})}), "u32");
  EXPECT_EQ(type_name({"tag1", narrowed({})}), "u16");
  EXPECT_EQ(type_name({"cell0", counts({4294967295})}), "u32");
  EXPECT_EQ(type_name({"cell0", counts({4294967296})}), "f64");
  EXPECT_EQ(type_name({"parent1", std::vector<std::uint8_t>{1}}), "u8");
}

TEST(Columns, KeepTheirNumbersWhenTheyAreMadeNarrower) {
  EXPECT_EQ(std::get<1>(narrowed({1, 65535})), (std::vector<std::uint16_t>{1, 65535}));
  EXPECT_EQ(std::get<2>(narrowed({1, 65536})), (Words{1, 65536}));
  EXPECT_EQ(std::get<2>(counts({7, 4294967295})), (Words{7, 4294967295}));
  EXPECT_EQ(std::get<3>(counts({7, std::uint64_t{1} << 53})), (std::vector<double>{7, 9007199254740992}));
}

TEST(Columns, AreLittleEndian) {
  const Column column{"cell0", Words{1, 0x04030201}};
  EXPECT_EQ(length_of(column), 2U);
  EXPECT_EQ(bytes_of(column), std::string("\1\0\0\0\1\2\3\4", 8));
}

TEST(Columns, BeginAtMultiplesOfEight) {
  const std::vector<Column> columns = {{"a", std::vector<std::uint8_t>(9)},
                                       {"b", std::vector<double>(1)},
                                       {"c", std::vector<std::uint16_t>()},
                                       {"d", Words(1)}};
  EXPECT_EQ(offsets_of(columns), (std::vector<std::size_t>{0, 16, 24, 24}));
}

TEST(Columns, HoldTextsAsTheirBytesAndEnds) {
  table::TextStore texts;
  for (const std::string text : {"rain", "", "né"})
    texts.number(text);
  std::vector<Column> columns;
  append_texts(texts, "lemmas", columns);
  ASSERT_EQ(columns.size(), 2U);
  EXPECT_EQ(columns[0].name, "lemmas.bytes");
  EXPECT_EQ(bytes_of(columns[0]), "rainné");
  EXPECT_EQ(columns[1].name, "lemmas.ends");
  EXPECT_EQ(std::get<2>(columns[1].numbers), (Words{4, 4, 7}));
}

}  // namespace
}  // namespace colx::report
