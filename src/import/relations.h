#pragma once

// Analytical functions for the relations of other annotation schemes.

#include <string>
#include <string_view>
#include <vector>

#include "import/sentence.h"

namespace colx {

// Whether ngrex knows a name as that of an analytical function, "Undef" included.
bool is_analytical_function(std::string_view name);

// Gives every word of a sentence, whose tree has no fault, the name of an analytical function, "Undef" where there is
// none. Names of analytical functions stay; universal relations go by a table; other spellings of both, such as ATR_CO
// or ROOT, are recognised. A conjunct takes the function of the first conjunct of its coordination with
// "_Co" and an apposition that of its parent with "_Ap". Linear in the words.
std::vector<std::string> analytical_functions(const TreebankSentence& sentence);

}  // namespace colx
