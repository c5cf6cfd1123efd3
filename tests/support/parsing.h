#pragma once

// What tests need of the parser: a place for its warnings, and its sentences as lengths.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/warning_sink.h"
#include "corpus/parser.h"

namespace colx::test {

// Keeps warnings as the error channel would print them. To be made before what warns.
class Warnings {
 public:
  WarningSink sink() {
    return [this](std::string_view warning) { _text += "WARNING: " + std::string(warning) + '\n'; };
  }
  const std::string& text() const { return _text; }

 private:
  std::string _text;
};

// Word counts of the sentences that the parser has read last.
inline std::vector<std::uint32_t> lengths_of(const Parser& parser) {
  std::vector<std::uint32_t> lengths;
  for (const SentenceExtent& sentence : parser.sentences())
    lengths.push_back(sentence.length);
  return lengths;
}

}  // namespace colx::test
