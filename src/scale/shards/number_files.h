#pragma once

// What numbering leaves for others to read: the texts of the corpus, and their numbers shard by shard.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "corpus/string_store.h"
#include "scale/engine/work_folder.h"

namespace colx::scale {

// The name of the task, and what tells a file of the numbers of one shard.
inline const std::string number_name = "number";
inline constexpr std::string_view numbers_kind = "numb";

// The numbers of the corpus that the lemmas, or tags, of a shard have, by their numbers in the shard.
std::vector<std::uint32_t> lemma_numbers(const WorkFolder& folder, std::size_t shard);
std::vector<std::uint8_t> tag_numbers(const WorkFolder& folder, std::size_t shard);

// The path of the file that holds them.
std::string numbers_file(const WorkFolder& folder, std::size_t shard);

// Loads the texts of the corpus.
void load_tags(const WorkFolder& folder, StringStore<std::uint8_t>& tags);
void load_lemmas(const WorkFolder& folder, StringStore<std::uint32_t>& lemmas);

}  // namespace colx::scale
