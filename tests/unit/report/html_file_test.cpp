#include "report/html_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "report/page.h"

namespace colx::report {
namespace {

std::string _html(const Content& content) {
  TextOutput output;
  write_html(content, output);
  return output.text();
}

bool _has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(HtmlFile, EscapesItsTitle) {
  EXPECT_EQ(html_text("a<b>&\"c'"), "a&lt;b&gt;&amp;&quot;c'");
  EXPECT_EQ(html_text(std::string("\0\n\xFF", 3)), "\uFFFD\uFFFD\uFFFD");
  EXPECT_TRUE(_has(_html({.title = "</title>", .meta = "{}", .columns = {}, .examples = {}}),
                   "<title>&lt;/title&gt;</title>\n"));
}

TEST(HtmlFile, HasNoElementForExamplesWhereThereAreNone) {
  EXPECT_FALSE(_has(_html({.title = "", .meta = "{}", .columns = {}, .examples = {}}), "id=\"examples\""));
  EXPECT_TRUE(_has(
      _html({.title = "", .meta = "{}", .columns = {}, .examples = {{"texts.ends", std::vector<std::uint32_t>{0}}}}),
      "<script type=\"application/octet-stream\" id=\"examples\">"));
}

TEST(HtmlFile, HasAPolicyThatAdmitsItsOwnScriptAndStyleAlone) {
  const std::string text = _html({.title = "", .meta = "{}", .columns = {}, .examples = {}});
  EXPECT_TRUE(_has(text, "content=\"default-src 'none'; script-src '" + std::string(page.script_hash) +
                             "'; style-src '" + std::string(page.style_hash) +
                             "'; base-uri 'none'; form-action 'none'\""));
  EXPECT_TRUE(_has(text, "<style>" + std::string(page.style) + "</style>"));
  EXPECT_TRUE(_has(text, "<script>" + std::string(page.script) + "</script>"));
}

}  // namespace
}  // namespace colx::report
