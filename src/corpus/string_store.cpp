#include "corpus/string_store.h"

#include <cstring>
#include <string>

#include "base/errors.h"
#include "util/hashing.h"

namespace colx {

string_too_long::string_too_long(std::size_t length, std::size_t limit)
    : std::length_error("A lemma or tag of " + std::to_string(length) +
                        " bytes does not fit in a block of its string store, which takes at most " +
                        std::to_string(limit) + " bytes!") {}

template <typename Index>
StringStore<Index>::StringStore(std::uint32_t block_size)
    : RandomSizedMemoryPool<char>(block_size + 1 + static_cast<std::uint32_t>(sizeof(Length))) {}

template <typename Index>
std::uint32_t StringStore<Index>::_find(std::uint64_t hash, std::string_view text) const {
  return _lookup.find(hash, [&](std::uint32_t index) {
    const std::string_view stored = _text(index);
    return stored.size() == text.size() && equal_bytes(stored.data(), text.data(), text.size());
  });
}

template <typename Index>
std::optional<Index> StringStore<Index>::find(std::string_view text) const {
  const std::uint32_t found = _find(hash_bytes(text.data(), text.size()), text);
  if (found == CompactIndex::none) return std::nullopt;
  return static_cast<Index>(found);
}

template <typename Index>
Index StringStore<Index>::store(std::string_view text) {
  const std::uint64_t hash = hash_bytes(text.data(), text.size());
  const std::uint32_t found = _find(hash, text);
  if (found != CompactIndex::none) return static_cast<Index>(found);
  if (_is_closed) return others;
  if (_texts.size() + 1 >= std::numeric_limits<Index>::max()) {
    // The text that found no place is counted, so that the store can be told from one that is merely full.
    _texts.resize(std::numeric_limits<Index>::max(), "");
    throw index_overflow("String store overflow!");
  }
  char* const copy = get_memory(sizeof(Length) + text.size() + 1);
  if (copy == nullptr) throw string_too_long(text.size(), block_size() - sizeof(Length) - 1);
  const auto length = static_cast<Length>(text.size());
  std::memcpy(copy, &length, sizeof length);
  std::memcpy(copy + sizeof length, text.data(), text.size());
  copy[sizeof length + text.size()] = '\0';
  _texts.push_back(copy + sizeof length);
  _lookup.insert(hash, [&](std::uint32_t index) { return hash_bytes(_text(index).data(), _text(index).size()); });
  return static_cast<Index>(_texts.size() - 1);
}

template class StringStore<std::uint32_t>;
template class StringStore<std::uint8_t>;

}  // namespace colx
