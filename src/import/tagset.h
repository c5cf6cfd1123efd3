#pragma once

// Tags of imported words: a column of the treebank as it stands, or a positional tag made from the universal word class
// and features, one ASCII letter a position.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace colx {

enum class TagSource : std::uint8_t { automatic, xpos, upos, feats };

// Positions of a tag made from features.
inline constexpr std::size_t feature_positions = 12;

// Whether a name is one of the 17 universal word classes, such as NOUN.
bool is_universal_class(std::string_view name);

// Makes the positional tag: '-' where a feature is absent, '?' where its value has no letter. Of several values, in one
// feature or in several of the same name, the first one counts. Features without a position are left out.
std::string positional_tag(std::string_view upos, std::string_view feats);

// What stands as '?' in that tag: names and values, such as "Case=Zzz" or "UPOS=Name", in the order of the positions.
std::vector<std::string> unknown_values(std::string_view upos, std::string_view feats);

// The feature of a position, from 0; "word class" for the first.
std::string_view position_name(std::size_t position);

// The table of letters, as `--tag-table` prints it.
std::string tag_table();

}  // namespace colx
