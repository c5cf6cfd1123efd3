#include "corpus/datafile_format.h"

namespace colx {

std::string masked_tag(std::string_view tag, std::string_view mask) {
  std::string kept(mask.size(), constants::insignificant_position_mark);
  for (std::size_t p = 0; p < mask.size() && p < tag.size(); ++p)
    if (mask[p] == constants::significant_position_mark) kept[p] = tag[p];
  return kept;
}

}  // namespace colx
