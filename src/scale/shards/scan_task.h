#pragma once

// Scanning: a shard of a datafile becomes sentences of numbers, with the lemmas and tags that it holds.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "corpus/string_store.h"
#include "scale/engine/plan.h"
#include "scale/shards/shard_warnings.h"
#include "spill/manifest.h"

namespace colx::scale {

// What a scan says of a datafile of its shard, or of the piece of one.
struct ScanResult {
  bool opened = false;           // whether the datafile could be opened at all
  std::uint64_t begin = 0;       // where it began in the datafile, and where it ended: between sentences, or at the
  std::uint64_t end = 0;         // end of the datafile
  bool at_end = false;           // whether the end of the datafile was noticed
  bool last_at_end = false;      // whether it was noticed while the last sentence was read
  bool unreadable = false;       // whether reading failed
  bool last_unreadable = false;  // whether it failed while the last sentence was read
  std::uint32_t lines = 0;       // as warnings count them
  std::uint64_t sentences = 0;
  std::uint64_t words = 0;
  std::size_t segment = 0;  // of the file of words, with which its sentences begin
  std::string failure;      // what ended the reading: a text that fits in no store; empty: nothing

  // Whether no sentence seemed to begin in the piece of a datafile: then the one before goes on beyond it.
  bool has_no_begin(const Shard& piece) const {
    return opened && !unreadable && !piece.is_last && begin == piece.end && end == piece.end;
  }
};

// What a scan says of its shard.
struct ScannedShard {
  std::vector<ScanResult> datafiles;  // in their order, up to one that cannot be read to its end
  std::uint64_t warnings = 0;
  bool overflow = false;  // whether the tags, or lemmas, of this shard alone are too many

  static ScannedShard from(const Manifest& manifest);
  void put_into(Manifest& manifest) const;
};

// The name of the task.
std::string scan_name(std::size_t shard);

// Scans a shard from where a sentence seems to begin or, when `begin` is given, from there.
ScannedShard scan(const WorkFolder& folder, const Plan& plan, std::size_t shard,
                  std::optional<std::uint64_t> begin = std::nullopt);

// Reads a shard that begins there once more, with stores that hold what came before it, and writes down the warnings as
// ngrex would give them. Returns the failure that ends the run in it, or an empty text.
std::string replay(const Plan& plan, std::size_t shard, std::uint64_t begin, StringStore<std::uint32_t>& lemmas,
                   StringStore<std::uint8_t>& tags, ShardWarningsWriter& warnings);

}  // namespace colx::scale
