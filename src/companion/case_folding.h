#pragma once

// Texts without the difference of capital and small letters.

#include <string>
#include <string_view>

namespace colx {

// The simple case folding of Unicode: two texts that differ in the case of letters only have the same folding. Letters
// are those of the locale; dotted and dotless i of Turkish stay apart, and bytes that are no UTF-8 stay as they are.
std::string folded(std::string_view text);

}  // namespace colx
