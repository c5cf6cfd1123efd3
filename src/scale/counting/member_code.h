#pragma once

// Members of N-grams as numbers of 32 bits, for corpora that have lemmas and tags few enough for that.

#include <cstdint>
#include <limits>

#include "base/config.h"
#include "corpus/dependencies.h"
#include "model/ngram.h"

namespace colx::scale {

// What stands for the members of a corpus of so many lemmas and tags.
class MemberCode {
 public:
  MemberCode() = default;
  MemberCode(std::uint64_t lemmas, std::uint64_t tags) : _lemmas(lemmas), _tags(tags) {}

  // Whether 32 bits are enough.
  bool fits() const {
    return _lemmas * _tags * _parents * dependencies_count <= std::uint64_t{1}
                                                                  << std::numeric_limits<std::uint32_t>::digits;
  }

  std::uint32_t code(NGram::Member member) const {
    const std::uint64_t tagged = member.lemma() * _tags + member.tag();
    return static_cast<std::uint32_t>((tagged * _parents + member.parent()) * dependencies_count + member.dependency());
  }
  NGram::Member member(std::uint32_t code) const {
    const std::uint32_t rest = code / dependencies_count;
    const std::uint64_t tagged = rest / _parents;
    return {static_cast<std::uint32_t>(tagged / _tags), static_cast<std::uint8_t>(tagged % _tags),
            static_cast<std::uint8_t>(rest % _parents), static_cast<std::uint8_t>(code % dependencies_count)};
  }

 private:
  std::uint64_t _lemmas = 0;
  std::uint64_t _tags = 1;
  std::uint64_t _parents = settings::n + 1U;
};

}  // namespace colx::scale
