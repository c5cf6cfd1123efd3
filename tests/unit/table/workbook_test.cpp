#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "companion/errors.h"
#include "table/table.h"
#include "table/workbook_parts.h"
#include "table/workbook_writer.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

std::string _xml(const std::string& text) {
  std::string xml;
  append_xml_text(xml, text);
  return xml;
}

TEST(Workbook, EscapesWhatXmlAndSpreadsheetsWouldMisread) {
  EXPECT_EQ(_xml("a<b>&\"c\""), "a&lt;b&gt;&amp;\"c\"");
  EXPECT_EQ(_xml("\x01_x0041_ _x004_"), "_x0001__x005F_x0041_ _x004_");
  EXPECT_EQ(_xml("\xEF\xBF\xBF\xFF"), "_xFFFF_\xEF\xBF\xBD");
}

TEST(Workbook, CountsTextsInUtf16) {
  std::string xml;
  EXPECT_EQ(append_xml_text(xml, "a<\xC3\xA9\xF0\x9F\x8C\xA7"), 5U);
}

TEST(Workbook, NamesColumnsByLetters) {
  EXPECT_EQ(column_letters(0), "A");
  EXPECT_EQ(column_letters(25), "Z");
  EXPECT_EQ(column_letters(26), "AA");
  EXPECT_EQ(column_letters(701), "ZZ");
  EXPECT_EQ(column_letters(702), "AAA");
}

TEST(Workbook, IsTheSameOnEveryRun) {
  const test::TemporaryFolder folder;
  const std::string input =
      folder.write("in", "1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t1\n1\t1\t1\t1\t1\t1\n\n\n");
  const auto content = [&](const std::string& name) {
    EXPECT_EQ(run({"--format=xlsx", "-o", folder.path(name), input}), 0);
    std::ifstream file(folder.path(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  };
  const std::string first = content("a");
  EXPECT_TRUE(first.starts_with("PK"));
  EXPECT_EQ(first, content("b"));
}

TEST(Workbook, RefusesWhatASheetHasNoRoomFor) {
  const test::TemporaryFolder folder;
  const NewFile file(folder.path("out"));
  FileOutput output(file);
  const std::vector<Heading> columns = {{"lemma1", ValueType::text}};
  const auto fields = [](std::string_view text) { return std::vector<Field>{{FieldKind::text, text}}; };
  const std::string longest(32767, 'a');

  const auto writer = make_workbook_writer(output, {});
  writer->begin(columns);
  writer->row(fields(longest));
  EXPECT_THROW(writer->row(fields(longest + "a")), output_error);

  const auto full = make_workbook_writer(output, {});
  full->begin(columns);
  const std::vector<Field> row = fields("a");
  for (int i = 1; i < 1048576; ++i)
    full->row(row);
  EXPECT_THROW(full->row(row), output_error);

  TextOutput nowhere;
  EXPECT_THROW(make_workbook_writer(nowhere, {}), usage_error);
}

}  // namespace
}  // namespace colx::table
