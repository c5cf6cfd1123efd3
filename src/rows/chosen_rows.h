#pragma once

// The chosen N-grams of an output datafile, as a source of blocks themselves.

#include <cstdint>
#include <memory>
#include <string>

#include "rows/block_source.h"
#include "rows/row_choice.h"

namespace colx::table {

// Gives the N-grams that a choice admits, in its order and no more than it wants. Without an order they come as they
// are read, in constant memory; with one the first call reads all of the source.
class ChosenRows : public BlockSource {
 public:
  // Source and choice, whose filters have been made, must outlive the rows.
  ChosenRows(BlockSource& source, const RowChoice& choice) : _source(source), _choice(choice) {}

  // Throws what the source throws, usage_error when the choice asks for something that N-grams of this N do not have,
  // and what a sort in bounded memory throws.
  bool next(Block& block) override;

  // Reads the source to its end, so that `found` and `admitted` are of all its N-grams. No further one is then given.
  void read_on();

  // The N-grams of the source that were read, and of these the ones that meet conditions and least frequency.
  std::uint64_t found() const { return _found; }
  std::uint64_t admitted() const { return _admitted; }

  // The N of the source; 0 as long as it is not known.
  std::size_t n() const { return _n; }

 private:
  bool _next_admitted(Block& block);
  void _sort();

  BlockSource& _source;
  const RowChoice& _choice;
  std::unique_ptr<OrderedRows> _sorted;  // nothing: not sorted, or not yet
  std::string _key;
  std::size_t _n = 0;
  std::uint64_t _found = 0;
  std::uint64_t _admitted = 0;
  std::uint64_t _given = 0;
};

}  // namespace colx::table
