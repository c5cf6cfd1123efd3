#include "companion/memory_size.h"

#include <unistd.h>

#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>

namespace colx {

std::size_t memory_of_machine() {
  constexpr std::size_t where_unknown = std::size_t{4} << 30;
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long page = ::sysconf(_SC_PAGESIZE);
  if (pages <= 0 || page <= 0) return where_unknown;
  return static_cast<std::size_t>(pages) * static_cast<std::size_t>(page);
}

std::size_t memory_size(const GivenOption& given) {
  constexpr std::string_view expected = "a size such as 256M or 2G";
  constexpr std::string_view units = "KMGT";
  const std::string& value = given.value;
  const char* const end = value.data() + value.size();
  std::size_t size = 0;
  const auto [unit, error] = std::from_chars(value.data(), end, size);
  if (error != std::errc() || end - unit > 1 || size == 0) reject(given, expected);
  if (unit == end) return size;
  const std::size_t power = units.find(*unit);
  if (power == std::string_view::npos) reject(given, expected);
  const std::size_t shift = 10 * (power + 1);
  if (size > std::numeric_limits<std::size_t>::max() >> shift) reject(given, expected);
  return size << shift;
}

}  // namespace colx
