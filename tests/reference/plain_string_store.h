#pragma once

// For tests only, never linked into the program: interning by an ordered map, without limits.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace colx::reference {

// Gives texts indexes from 0 in order of first sight.
class PlainStringStore {
 public:
  std::uint32_t store(const std::string& text) {
    const auto [entry, is_new] = _indexes.emplace(text, static_cast<std::uint32_t>(_texts.size()));
    if (is_new) _texts.push_back(text);
    return entry->second;
  }

  const std::string& operator[](std::uint32_t index) const { return _texts[index]; }
  std::size_t size() const { return _texts.size(); }

 private:
  std::map<std::string, std::uint32_t> _indexes;
  std::vector<std::string> _texts;
};

}  // namespace colx::reference
