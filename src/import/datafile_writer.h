#pragma once

// Writing of datafiles.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/descriptor.h"

namespace colx {

// A field as it may stand in a datafile: every white-space character of Unicode becomes U+00A0, an empty field "_".
std::string datafile_field(std::string_view text);

// Whether a text may stand in a datafile as it is.
bool is_datafile_field(std::string_view text);

// The path of one of several datafiles: the number, from 1 and with at least four digits, goes before the extension of
// the file name, as in corpus-0001.dat.
std::string numbered_path(const std::string& path, std::uint64_t number);

// Writes sentences to one datafile or, in turn, to several. All functions that write throw output_error.
class DatafileWriter {
 public:
  // An empty path is standard output. With `split` other than 0 a new file is begun where a sentence would bring the
  // one in hand above that many words. Files in `kept` are never overwritten. The first file is created here.
  DatafileWriter(std::string path, std::uint64_t split, std::vector<FileIdentity> kept);
  // Writes the text of a sentence of `words` words, without the empty line behind it. Returns the line of its first
  // word in its file, which is the last one of `paths`.
  std::uint64_t write(std::string_view sentence, std::uint64_t words);

  // Writes what is left and closes; to be called once, at the end.
  void finish();

  // The paths of the files created so far.
  const std::vector<std::string>& paths() const { return _paths; }

 private:
  void _refuse(const std::optional<RegularFile>& file) const;
  void _open();
  void _flush();
  void _close();

  std::string _path;
  std::uint64_t _split;
  std::vector<FileIdentity> _kept;
  std::vector<std::string> _paths;
  std::string _name;
  Descriptor _output;
  std::uint64_t _words = 0;  // in the file in hand
  std::uint64_t _lines = 0;  // the same
  std::string _buffer;
};

}  // namespace colx
