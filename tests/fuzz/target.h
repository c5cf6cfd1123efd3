#pragma once

// Fuzz targets: functions that take any bytes and end the process when a promise is broken. Each is built with
// libFuzzer (NGREX_FUZZ) or with replay.cpp, which feeds it the kept corpus and mutations of it.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace colx::fuzz {

// Ends the process when the condition does not hold.
inline void promise(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

inline std::string_view text_of(const std::uint8_t* bytes, std::size_t size) {
  return {reinterpret_cast<const char*>(bytes), size};
}

}  // namespace colx::fuzz
