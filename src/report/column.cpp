#include "report/column.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::report {

static_assert(std::endian::native == std::endian::little, "numbers are written as they are in memory");

std::string_view type_name(const Column& column) {
  constexpr std::array<std::string_view, std::variant_size_v<Numbers>> names = {"u8", "u16", "u32", "f64"};
  return names[column.numbers.index()];
}

std::size_t length_of(const Column& column) {
  return std::visit([](const auto& numbers) { return numbers.size(); }, column.numbers);
}

std::string_view bytes_of(const Column& column) {
  return std::visit(
      [](const auto& numbers) {
        return std::string_view(reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof numbers[0]);
      },
      column.numbers);
}

Numbers narrowed(const std::vector<std::uint32_t>& numbers) {
  constexpr std::uint32_t most = std::numeric_limits<std::uint16_t>::max();
  if (std::any_of(numbers.begin(), numbers.end(), [](std::uint32_t number) { return number > most; })) return numbers;
  std::vector<std::uint16_t> narrow(numbers.size());
  std::transform(numbers.begin(), numbers.end(), narrow.begin(),
                 [](std::uint32_t number) { return static_cast<std::uint16_t>(number); });
  return narrow;
}

Numbers counts(const std::vector<std::uint64_t>& numbers) {
  constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
  if (std::any_of(numbers.begin(), numbers.end(), [](std::uint64_t number) { return number > most; }))
    return std::vector<double>(numbers.begin(), numbers.end());
  std::vector<std::uint32_t> narrow(numbers.size());
  std::transform(numbers.begin(), numbers.end(), narrow.begin(),
                 [](std::uint64_t number) { return static_cast<std::uint32_t>(number); });
  return narrow;
}

void append_texts(const table::TextStore& texts, std::string_view name, std::vector<Column>& columns) {
  std::vector<std::uint8_t> bytes;
  std::vector<std::uint32_t> ends;
  for (std::uint32_t number = 0; number < texts.size(); ++number) {
    const std::string_view text = texts[number];
    if (text.size() > std::numeric_limits<std::uint32_t>::max() - bytes.size())
      throw output_error(fmt::format("the {} of the report take more than 4 GiB; choose fewer rows", name));
    bytes.insert(bytes.end(), text.begin(), text.end());
    ends.push_back(static_cast<std::uint32_t>(bytes.size()));
  }
  columns.push_back({fmt::format("{}.bytes", name), std::move(bytes)});
  columns.push_back({fmt::format("{}.ends", name), std::move(ends)});
}

}  // namespace colx::report
