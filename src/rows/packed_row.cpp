#include "rows/packed_row.h"

#include <algorithm>
#include <cstring>

namespace colx::table {

namespace {

constexpr std::size_t _beginning_of_all_members = 2;

// Eight bytes of a text, ordered as the text is; a shorter one is filled up with zeros.
std::uint64_t _eight_bytes(std::string_view text) {
  std::uint64_t bytes = 0;
  for (std::size_t i = 0; i < sizeof bytes; ++i)
    bytes = bytes << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
  return bytes;
}

}  // namespace

std::size_t packed_size(const KeyedRow& row) {
  return sizeof(PackedSizes) + row.key.size() + row.text.size();
}

void pack(const KeyedRow& row, char* to) {
  const PackedSizes sizes{static_cast<std::uint32_t>(row.key.size()), static_cast<std::uint32_t>(row.text.size()),
                          static_cast<std::uint32_t>(row.members_size)};
  std::memcpy(to, &sizes, sizeof sizes);
  to = std::copy(row.key.begin(), row.key.end(), to + sizeof sizes);
  std::copy(row.text.begin(), row.text.end(), to);
}

PackedSizes sizes_of(const char* packed) {
  PackedSizes sizes;
  std::memcpy(&sizes, packed, sizeof sizes);
  return sizes;
}

KeyedRow unpack(const char* packed) {
  const PackedSizes sizes = sizes_of(packed);
  const char* const key = packed + sizeof sizes;
  return {{key, sizes.key}, {key + sizes.key, sizes.text}, sizes.members};
}

// As no key is the beginning of another, what follows a key counts among equal keys only.
int compare_packed(const char* a, const char* b) {
  const auto sorted_by = [](const char* packed) {
    const PackedSizes sizes = sizes_of(packed);
    return std::string_view(packed + sizeof sizes, std::size_t{sizes.key} + sizes.members);
  };
  return sorted_by(a).compare(sorted_by(b));
}

PackedPrefix prefix_of(const KeyedRow& row) {
  constexpr std::size_t size = 16;
  char bytes[size] = {};
  const std::size_t of_key = row.key.copy(bytes, size);
  const std::string_view members = row.text.substr(0, row.members_size);
  members.copy(bytes + of_key, size - of_key, std::min(members.size(), _beginning_of_all_members));
  const std::string_view all(bytes, size);
  return {_eight_bytes(all), _eight_bytes(all.substr(8))};
}

}  // namespace colx::table
