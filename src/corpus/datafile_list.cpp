#include "corpus/datafile_list.h"

#include <fstream>
#include <utility>

#include "base/files.h"

namespace colx {

namespace {

// The length of a stream that stands at its beginning, 0 when it cannot be taken.
std::uint64_t _size(std::ifstream& stream) {
  stream.seekg(0, std::ios::end);
  const std::streamoff end = stream.tellg();
  return end < 0 ? 0 : static_cast<std::uint64_t>(end);
}

}  // namespace

bool read_datafile_list(const std::string& list, const std::string& prefix,
                        const std::function<void(ListedDatafile datafile)>& take) {
  return read_lines(list, [&](const std::string& line) {
    if (line.empty()) return;
    ListedDatafile datafile;
    datafile.entry = line;
    datafile.path = prefix + line;
    std::ifstream stream = open_input(datafile.path);
    datafile.is_open = stream.is_open();
    if (datafile.is_open) datafile.size = _size(stream);
    take(std::move(datafile));
  });
}

}  // namespace colx
