#include "model/context.h"

#include <algorithm>
#include <utility>

namespace colx {

void ContextList::add(const PartOfContext& part) {
  auto seen = std::find(_parts.begin(), _parts.end(), part);
  if (seen == _parts.end()) {
    _parts.push_back(part);
    return;
  }
  seen->inc();
  for (; seen != _parts.begin() && (seen - 1)->frequency() < seen->frequency(); --seen)
    std::swap(*(seen - 1), *seen);
}

}  // namespace colx
