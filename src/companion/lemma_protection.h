#pragma once

// Look-alikes for the characters at which ngrex cuts a lemma.

#include <string>
#include <string_view>

namespace colx {

// Replaces the suffix marks ' : ; ^ _ by letters and marks that look the same and that no normalisation form of Unicode
// turns back: U+2019, U+A789, U+204F, U+02C6, U+02CD, in UTF-8.
std::string protect_lemma(std::string_view lemma);

}  // namespace colx
