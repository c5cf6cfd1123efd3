#pragma once

// Texts in JSON.

#include <string>
#include <string_view>

namespace colx {

// Appends a text in quotes. Bytes that are no UTF-8 become U+FFFD, since JSON has no other encoding.
void append_json_text(std::string& json, std::string_view text);

}  // namespace colx
