#pragma once

// The analytical functions of a sentence, by a table of relations.

#include <string>
#include <vector>

#include "import/relation_map.h"
#include "import/sentence.h"

namespace colx {

// Gives every word of a sentence, whose tree has no fault, the name of an analytical function, "Undef" where there is
// none. Relations go by the table; what is not in it may be the name of an analytical function, which stays, or another
// spelling of one, such as ATR_CO; what is not that either may be in the table in small letters, such as ROOT. Linear
// in the words.
std::vector<std::string> analytical_functions(const TreebankSentence& sentence, const RelationMap& map);

}  // namespace colx
