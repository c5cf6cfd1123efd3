#pragma once

// The walk over one datafile: every N-gram occurrence of every sentence goes to the store, under a progress bar.

#include <cstdint>
#include <istream>

#include "base/channels.h"
#include "corpus/datafile_stats.h"
#include "extraction/stores.h"

namespace colx {

// Reads a datafile to its end and counts its N-grams in the stores; adds to `stats`. Returns the length of the datafile
// in bytes, modulo 2^32, as it was found at the beginning; 0 when it cannot be taken and also when there is no
// sentence.
//
// While the progress bar is drawn the walk ends with the first sentence after which the stream is at its end, even if
// the window has read further sentences ahead. A stream that cannot be brought back to its beginning or read to its end
// has failed afterwards, and what could be read is counted. Passes on index_overflow, string_too_long and
// std::bad_alloc; what was stored by then stays counted.
std::uint32_t extract(std::istream& stream, NamedDataFileStats& stats, const Stores& stores, const Channels& channels);

}  // namespace colx
