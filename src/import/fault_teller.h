#pragma once

// Messages about what is wrong in a treebank.

#include <cstdint>
#include <string>
#include <vector>

#include "import/fault.h"
#include "import/reading_bar.h"
#include "import/sentence.h"

namespace colx {

// Tells of faults on standard error as they are found, and counts them. Of an input the first fifty that cost sentences
// are told, and of every other kind the first; where finding them is all that is wanted, all of them.
class FaultTeller {
 public:
  // The bar, which is not owned, is cleared before a message. `is_check`: nothing is written.
  FaultTeller(ReadingBar& bar, bool is_check) : _bar(bar), _is_check(is_check) {}

  // Begins an input, given by its name for messages.
  void begin_input(std::string name, TreebankFormat format);

  // Tells of the faults of a sentence.
  void tell(const std::vector<TreebankProblem>& problems);

  // Ends the input: says how many of its faults were not told.
  void end_input() const;

  // Counts faults that were told as one with another.
  void count(Fault fault, std::uint64_t count) { _counts.add(fault, count); }

  // Tells of something else that is wrong.
  void complain(const std::string& message);

  // How many messages there were.
  std::uint64_t told() const { return _told; }

  // All faults, told or not.
  const FaultCounts& counts() const { return _counts; }

 private:
  bool _is_told(Fault fault);

  ReadingBar& _bar;
  bool _is_check;
  std::uint64_t _told = 0;
  FaultCounts _counts;
  // Of the input in hand.
  std::string _input;
  TreebankFormat _format = TreebankFormat::conllu;
  FaultCounts _of_input;
  std::uint64_t _costly = 0;
  std::uint64_t _untold = 0;
};

// Writes a text to standard error as it is.
void say(const std::string& text);

}  // namespace colx
