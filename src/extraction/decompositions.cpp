#include "extraction/decompositions.h"

namespace colx {

void SumDecompositions::for_each(std::uint32_t sum, std::uint32_t parts, const Admits& admits, const Visit& visit) {
  if (sum == 0 || parts == 0) return;
  _shares.clear();
  _extend(sum, parts, admits, visit);
}

// Distributes `rest` among the first `parts` children, below those that have their shares already.
void SumDecompositions::_extend(std::uint32_t rest, std::uint32_t parts, const Admits& admits, const Visit& visit) {
  if (rest == 0) {
    _ascending.assign(_shares.rbegin(), _shares.rend());
    visit(_ascending);
    return;
  }
  for (std::uint32_t highest = 0; highest < parts; ++highest) {
    // The lowest child has nobody below it and takes all that is left.
    for (std::uint32_t size = highest == 0 ? rest : 1; size <= rest; ++size) {
      if (!admits(highest, size)) continue;
      _shares.push_back({highest, size});
      _extend(rest - size, highest, admits, visit);
      _shares.pop_back();
    }
  }
}

}  // namespace colx
