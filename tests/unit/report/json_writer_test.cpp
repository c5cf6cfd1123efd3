#include "report/json_writer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace colx::report {
namespace {

TEST(JsonWriter, PutsCommasBetweenValuesAndLinesBetweenWhatIsOutermost) {
  JsonWriter json;
  json.begin_object();
  json.key("n").value(std::uint64_t{2});
  json.key("list").begin_array().value("a").value(true).null().begin_object().end_object().end_array();
  json.key("top").value(std::optional<std::uint64_t>());
  json.end_object();
  EXPECT_EQ(json.text(), "{\"n\": 2,\n\"list\": [\"a\", true, null, {}],\n\"top\": null}");
}

TEST(JsonWriter, EscapesWhatWouldEndAScriptElement) {
  EXPECT_EQ(json_text("</script><!--"), "\"\\u003c/script>\\u003c!--\"");
}

TEST(JsonWriter, EscapesQuotesBackslashesAndControlCharacters) {
  EXPECT_EQ(json_text("\"\\'"), "\"\\\"\\\\'\"");
  EXPECT_EQ(json_text(std::string("\0\n\x1B\x7F", 4)), "\"\\u0000\\u000a\\u001b\\u007f\"");
  EXPECT_EQ(json_text("\u0085"), "\"\\u0085\"");
}

TEST(JsonWriter, EscapesTheLineSeparatorsOfUnicode) {
  EXPECT_EQ(json_text("\u2028a\u2029"), "\"\\u2028a\\u2029\"");
}

TEST(JsonWriter, ReplacesBytesThatAreNoUtf8) {
  EXPECT_EQ(json_text("\xFFn\xC3\xA9\xC3"), "\"\uFFFDné\uFFFD\"");
}

}  // namespace
}  // namespace colx::report
