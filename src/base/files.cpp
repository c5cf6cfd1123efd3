#include "base/files.h"

#include <filesystem>
#include <system_error>

namespace colx {

std::ifstream open_input(const std::string& path) {
  std::ifstream stream;
  std::error_code unknown;  // what cannot be looked at is left to open
  if (!std::filesystem::is_directory(path, unknown)) stream.open(path, std::ios::binary);
  return stream;
}

}  // namespace colx
