#pragma once

// The tag mask under which tags tell most, while no more of them are distinct than ngrex can hold.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace colx {

// Tags and how many words have each of them, which is at least one.
using TagCounts = std::map<std::string, std::uint64_t>;

// What tags tell under a mask.
struct TagInformation {
  std::size_t distinct = 0;
  double bits = 0;  // the entropy of the tag of a word, -sum p log2 p over the distinct tags
};

// The tags as they are, and under a mask.
TagInformation tag_information(const TagCounts& tags);
TagInformation tag_information(const TagCounts& tags, std::string_view mask);

// Returns a mask of '*' and '-', as long as the longest tag but at most 64, under which at most `limit` tags are
// distinct. The first position, which is the word class in most tagsets, is kept unless it alone has more letters than
// that.
//
// Among these masks it is the one of highest entropy; of several whose entropies are equal to nine decimal places the
// one that keeps most positions, and then the one that keeps the earlier ones. The search is exact unless it reaches a
// fixed amount of work, which tags of some 16 positions do not; then the best mask found so far is the answer, at least
// as good as that of dropping positions one by one. The result is the same everywhere.
std::string best_mask(const TagCounts& tags, std::size_t limit);

}  // namespace colx
