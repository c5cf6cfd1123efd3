#pragma once

// Opening files for reading.

#include <fstream>
#include <string>

namespace colx {

// Opens a file for reading; the stream is not open when that fails. A directory counts as a file that cannot be opened,
// although the system would open it.
std::ifstream open_input(const std::string& path);

}  // namespace colx
