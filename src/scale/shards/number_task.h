#pragma once

// Numbering: puts the scanned shards together in the order of the list, and with them the numbers of lemmas and tags,
// which are those of first sight in the whole corpus, and the messages.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "scale/engine/plan.h"
#include "scale/shards/number_files.h"
#include "spill/manifest.h"

namespace colx::scale {

// What was found out about a shard.
struct NumberedShard {
  bool used = false;                               // whether there is anything left for it to hold
  std::uint64_t numbers = 0;                       // what tells the file of its numbers
  std::vector<std::uint64_t> extracted_sentences;  // by its datafiles: how many of their sentences, from the first on
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

// Does the task. Shards that did not begin where the one before ends are scanned again.
void number_shards(const WorkFolder& folder, const Plan& plan);

// What the task depends on: the scans.
std::uint64_t number_key(const WorkFolder& folder, const Plan& plan);

// Says on standard error what ngrex would have warned of while it read the datafiles: all but the first `told`
// warnings, which have been said before a damaged file was met; raises that number as it goes.
void tell_messages(const WorkFolder& folder, const Manifest& numbering, std::size_t& told);

}  // namespace colx::scale
