#pragma once

// Numbering: puts the scanned shards together in the order of the list, and with them the numbers of lemmas and tags,
// which are those of first sight in the whole corpus, and the messages.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "corpus/string_store.h"
#include "scale/plan.h"
#include "spill/manifest.h"

namespace colx::scale {

// What was found out about a shard.
struct NumberedShard {
  bool used = false;                      // whether there is anything left for it to hold
  std::uint64_t extracted_sentences = 0;  // of its sentences, from the first one on
};

// What was found out about a datafile.
struct NumberedDatafile {
  bool opened = false;
  std::uint64_t words = 0;
  std::uint64_t sentences = 0;
};

// What the task leaves, beside the texts.
struct Numbering {
  std::vector<NumberedShard> shards;
  std::vector<NumberedDatafile> datafiles;
  std::uint64_t lemmas = 0;
  std::uint64_t tags = 0;
  std::string failure;  // what ends the run; empty: nothing

  static Numbering from(const Manifest& manifest);
};

inline const std::string number_name = "number";

// Does the task. Shards that did not begin where the one before ends are scanned again.
void number_shards(const WorkFolder& folder, const Plan& plan);

// What the task depends on: the scans.
std::uint64_t number_key(const WorkFolder& folder, const Plan& plan);

// Says on standard error what ngrex would have warned of while it read the datafiles.
void tell_messages(const WorkFolder& folder, const Manifest& numbering);

// The numbers of the corpus that the lemmas of a shard have, by their numbers in the shard.
std::vector<std::uint32_t> lemma_numbers(const WorkFolder& folder, std::size_t shard);
std::vector<std::uint8_t> tag_numbers(const WorkFolder& folder, std::size_t shard);

// The file that holds them, and what tells its content.
std::string numbers_file(const WorkFolder& folder, std::size_t shard);

// Loads the texts of the corpus.
void load_tags(const WorkFolder& folder, StringStore<std::uint8_t>& tags);
void load_lemmas(const WorkFolder& folder, StringStore<std::uint32_t>& lemmas);

}  // namespace colx::scale
