#pragma once

// The listings of all types, from what merging the contexts has left of the places at which records were first seen.

#include <cstdint>

#include "model/listing.h"
#include "scale/contexts/context_layout.h"

namespace colx::scale {

// The listing of a type, ready for any comparison. Memory: the first places of one piece of the corpus.
Listing listing_of(const WorkFolder& folder, const ContextLayout& layout, std::uint8_t type);

}  // namespace colx::scale
