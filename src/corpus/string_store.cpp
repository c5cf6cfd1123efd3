#include "corpus/string_store.h"

#include <cstring>
#include <string>

#include "run/errors.h"

namespace colx {

string_too_long::string_too_long(std::size_t length, std::size_t limit)
    : std::length_error("A lemma or tag of " + std::to_string(length) +
                        " bytes does not fit in a block of its string store, which takes at most " +
                        std::to_string(limit) + " bytes!") {}

template <typename Index>
bool StringStoreLessComparator<Index>::operator()(Index a, Index b) const {
  return std::strcmp(_texts[a], _texts[b]) < 0;
}

template <typename Index>
StringStore<Index>::StringStore(std::uint32_t block_size)
    : RandomSizedMemoryPool<char>(block_size + 1), _lookup(StringStoreLessComparator<Index>(_texts)) {}

template <typename Index>
Index StringStore<Index>::store(const char* text) {
  const auto candidate = static_cast<Index>(_texts.size());
  _texts.push_back(text);
  const auto bound = _lookup.lower_bound(candidate);
  if (bound != _lookup.end() && std::strcmp(_texts[*bound], text) == 0) {
    _texts.pop_back();
    return *bound;
  }
  if (_texts.size() == std::numeric_limits<Index>::max()) throw index_overflow("String store overflow!");
  const std::size_t length = std::strlen(text);
  char* copy = get_memory(length + 1);
  if (copy == nullptr) {
    _texts.pop_back();
    throw string_too_long(length, block_size() - 1);
  }
  std::memcpy(copy, text, length + 1);
  _texts.back() = copy;
  _lookup.insert(bound, candidate);
  return candidate;
}

template class StringStoreLessComparator<std::uint32_t>;
template class StringStoreLessComparator<std::uint8_t>;
template class StringStore<std::uint32_t>;
template class StringStore<std::uint8_t>;

}  // namespace colx
