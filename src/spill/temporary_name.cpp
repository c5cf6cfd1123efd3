#include "spill/temporary_name.h"

#include <unistd.h>

#include <random>

#include <fmt/format.h>

namespace colx {

std::string temporary_name(const std::string& path) {
  // Processes of different machines may have the same number.
  return fmt::format("{}.{}-{:08x}.part", path, ::getpid(), std::random_device()());
}

}  // namespace colx
