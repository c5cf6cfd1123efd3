#include "rows/text_store.h"

#include "util/hashing.h"

namespace colx::table {

namespace {

std::uint64_t _hash_of(std::string_view text) {
  return hash_bytes(text.data(), text.size());
}

}  // namespace

std::uint32_t TextStore::number(std::string_view text) {
  if (const auto known = find(text); known.has_value()) return *known;
  _lookup.insert(_hash_of(text), [&](std::uint32_t number) { return _hash_of((*this)[number]); });
  _bytes += text;
  _ends.push_back(_bytes.size());
  return static_cast<std::uint32_t>(_ends.size() - 1);
}

std::optional<std::uint32_t> TextStore::find(std::string_view text) const {
  const std::uint32_t known =
      _lookup.find(_hash_of(text), [&](std::uint32_t number) { return (*this)[number] == text; });
  if (known == CompactIndex::none) return std::nullopt;
  return known;
}

}  // namespace colx::table
