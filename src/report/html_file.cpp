#include "report/html_file.h"

#include <span>

#include <fmt/format.h>

#include "companion/utf8.h"
#include "report/packed_columns.h"
#include "report/page.h"

namespace colx::report {

namespace {

void _write_element(std::string_view id, std::span<const Column> columns, Output& output) {
  output << fmt::format("<script type=\"application/octet-stream\" id=\"{}\">", id);
  write_packed(columns, output);
  output << "</script>\n";
}

}  // namespace

std::string html_text(std::string_view text) {
  constexpr char32_t replacement = 0xFFFD;
  std::string result;
  while (!text.empty()) {
    const Character character = first_character(text);
    const char32_t code = character.code;
    if (code == '&')
      result += "&amp;";
    else if (code == '<')
      result += "&lt;";
    else if (code == '>')
      result += "&gt;";
    else if (code == '"')
      result += "&quot;";
    else
      append_character(result, code < 0x20 || (code >= 0x7F && code < 0xA0) ? replacement : code);
    text.remove_prefix(character.size);
  }
  return result;
}

void write_html(const Content& content, Output& output) {
  output << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         << "<meta http-equiv=\"Content-Security-Policy\" content=\""
         << fmt::format("default-src 'none'; script-src '{}'; style-src '{}'; base-uri 'none'; form-action 'none'\">\n",
                        page.script_hash, page.style_hash)
         << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         << fmt::format("<title>{}</title>\n", html_text(content.title)) << "<style>" << page.style
         << "</style>\n</head>\n<body>\n"
         << page.body << "<script type=\"application/json\" id=\"report\">" << content.meta << "</script>\n";
  _write_element("columns", content.columns, output);
  if (!content.examples.empty()) _write_element("examples", content.examples, output);
  output << "<script>" << page.script << "</script>\n</body>\n</html>\n";
  output.flush();
}

}  // namespace colx::report
