#include "examples/heading.h"

#include <cstdint>

#include <fmt/format.h>

#include "companion/utf8.h"

namespace colx::examples {

namespace {

std::string _times(std::uint64_t count) {
  return fmt::format("{} time{}", count, count == 1 ? "" : "s");
}

}  // namespace

std::string heading_text(const Heading& heading) {
  const std::string pattern = printable(heading.pattern);
  if (heading.block == nullptr && !heading.is_complete)
    return fmt::format("{} (first {} shown)", pattern, heading.shown);
  const std::uint64_t all = heading.frequency.value_or(heading.found);
  const std::string shown = heading.shown == all ? "" : fmt::format(", {} shown", heading.shown);
  if (heading.block == nullptr) return fmt::format("{} (found {}{})", pattern, _times(all), shown);
  return fmt::format("{}. {} ({}{})", heading.rank, pattern, _times(all), shown);
}

}  // namespace colx::examples
