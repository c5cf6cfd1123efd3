#pragma once

// For tests only, never linked into the program: the list of context words kept in order at every sighting, by search
// from the front and swaps. Costs the length of the list for each sighting.

#include <algorithm>
#include <utility>
#include <vector>

#include "model/context.h"

namespace colx::reference {

class PlainContextList {
 public:
  // Counts one sighting of a word given with frequency 1.
  void add(const PartOfContext& part) {
    auto seen = std::find(_parts.begin(), _parts.end(), part);
    if (seen == _parts.end()) {
      _parts.push_back(part);
      return;
    }
    seen->inc();
    for (; seen != _parts.begin() && (seen - 1)->frequency() < seen->frequency(); --seen)
      std::swap(*(seen - 1), *seen);
  }

  const std::vector<PartOfContext>& parts() const { return _parts; }

 private:
  std::vector<PartOfContext> _parts;
};

}  // namespace colx::reference
