#pragma once

// Names of analytical functions, as ngrex and as treebanks spell them.

#include <optional>
#include <string>
#include <string_view>

namespace colx {

// What ngrex makes of a name that it does not know.
inline constexpr std::string_view undefined_function = "Undef";

// Whether ngrex knows a name as that of an analytical function, "Undef" included.
bool is_analytical_function(std::string_view name);

// A name that is one of an analytical function but for upper and lower case, such as ATR_CO, or one that other
// treebanks use for it, with or without suffix; of several or unknown suffixes the last one counts that the function
// can have. Nothing when it is none. The result lives as long as the process.
std::optional<std::string_view> function_in_other_spelling(std::string_view name);

// The text with small letters for the capital ones of ASCII.
std::string in_small_letters(std::string_view text);

}  // namespace colx
