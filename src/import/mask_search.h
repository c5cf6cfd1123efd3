#pragma once

// The tag mask that keeps most positions while no more tags are distinct than ngrex can hold.

#include <cstddef>
#include <string>
#include <vector>

namespace colx {

// Returns a mask of '*' and '-', as long as the longest tag but at most 64, under which `tags`, all different, become
// at most `limit` different ones.
//
// First positions are added one by one, always the one that adds fewest distinct tags. Then all sets of positions are
// tried that could keep more, or as many and more distinct tags, by branch and bound. The search gives up after a fixed
// amount of work, which tags of some 15 positions do not reach; the best mask so far is then the answer, so the result
// is the same everywhere.
//
// With `keep_first` only masks that keep the first position, which is the word class in most tagsets, are considered;
// the result is empty when there is none.
std::string best_mask(const std::vector<std::string>& tags, std::size_t limit, bool keep_first = false);

}  // namespace colx
