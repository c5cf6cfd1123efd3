#pragma once

// The texts behind the numbers by which records know words.

#include <cstdint>

#include "corpus/string_store.h"

namespace colx {

// The two stores that a corpus was interned in; neither is owned.
struct WordTexts {
  const StringStore<std::uint32_t>& lemmas;
  const StringStore<std::uint8_t>& tags;
};

}  // namespace colx
