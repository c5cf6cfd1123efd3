#include "scale/shards/number_files.h"

#include <cstring>

#include <fmt/format.h>

#include "scale/engine/texts_file.h"

namespace colx::scale {

std::string numbers_file(const WorkFolder& folder, std::size_t shard) {
  return folder.file(number_name, fmt::format("numbers-{}", shard));
}

std::vector<std::uint8_t> tag_numbers(const WorkFolder& folder, std::size_t shard) {
  SegmentReader file(numbers_file(folder, shard), numbers_kind);
  const std::string_view bytes = file.read(0);
  return {bytes.begin(), bytes.end()};
}

std::vector<std::uint32_t> lemma_numbers(const WorkFolder& folder, std::size_t shard) {
  SegmentReader file(numbers_file(folder, shard), numbers_kind);
  std::vector<std::uint32_t> numbers;
  for (std::size_t i = 1; i < file.segments(); ++i) {
    const std::string_view bytes = file.read(i);
    const std::size_t count = numbers.size();
    numbers.resize(count + bytes.size() / sizeof(std::uint32_t));
    if (!bytes.empty()) std::memcpy(numbers.data() + count, bytes.data(), bytes.size());
  }
  return numbers;
}

void load_tags(const WorkFolder& folder, StringStore<std::uint8_t>& tags) {
  for_each_text(folder.file(number_name, "tags"), [&](std::string_view text) { tags.store(text); });
}

void load_lemmas(const WorkFolder& folder, StringStore<std::uint32_t>& lemmas) {
  for_each_text(folder.file(number_name, "lemmas"), [&](std::string_view text) { lemmas.store(text); });
}

}  // namespace colx::scale
