#include "rows/text_store.h"

#include "util/hashing.h"

namespace colx::table {

std::uint32_t TextStore::number(std::string_view text) {
  const auto hash_of = [](std::string_view any) { return hash_bytes(any.data(), any.size()); };
  const std::uint64_t hash = hash_of(text);
  const std::uint32_t known = _lookup.find(hash, [&](std::uint32_t number) { return (*this)[number] == text; });
  if (known != CompactIndex::none) return known;
  _lookup.insert(hash, [&](std::uint32_t number) { return hash_of((*this)[number]); });
  _bytes += text;
  _ends.push_back(_bytes.size());
  return static_cast<std::uint32_t>(_ends.size() - 1);
}

}  // namespace colx::table
