#pragma once

// Checksums of whole datafiles, by which it is told whether they are those of before.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace colx::scale {

// A file of so many bytes.
struct SizedFile {
  std::string path;
  std::uint64_t size = 0;
};

// The checksum of the content of each file, read by as many processes as are worth while; 0 for one that cannot be
// read.
std::vector<std::uint64_t> content_versions(const std::vector<SizedFile>& files, std::size_t jobs);

}  // namespace colx::scale
