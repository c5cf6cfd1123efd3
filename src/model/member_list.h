#pragma once

// One occurrence of an N-gram in a sentence: what a record is built from.

#include <cstdint>
#include <utility>
#include <vector>

#include "corpus/word.h"

namespace colx {

// The words of an occurrence in ascending position. The number beside each is the place, from 1, of the word's parent
// in this same list, or 0 when the parent is none of its words.
using MemberList = std::vector<std::pair<std::uint8_t, WordIterator>>;

}  // namespace colx
