#pragma once

// Sentence files, as ngrex-import --sentences makes them, read back: for the sentences of datafiles where they come
// from and how they were written.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "companion/byte_source.h"
#include "companion/sentence_record.h"

namespace colx {

// A sentence file, plain or compressed with gzip. It is gone through once when it is opened, and then read where it is
// asked. In memory are a line, the names of the datafiles, and one place for about every 16 KiB.
//
// All functions that read throw input_error, with the line of this file and what was expected there.
class SentenceFile {
 public:
  // A datafile of which sentences are there.
  struct Datafile {
    std::string path;  // as it stands there
    std::uint64_t sentences;
  };

  // Opens a file and looks at all of it. Refuses what is malformed, and a pipe, which cannot be read again.
  explicit SentenceFile(const std::string& path);

  // The datafiles, in the order of the file.
  const std::vector<Datafile>& datafiles() const { return _datafiles; }

  // The datafile, as an index, that is written so in the list of datafiles and opened as `path`, under these or another
  // name; nothing when no sentence of it is there.
  std::optional<std::size_t> datafile(std::string_view entry, const std::string& path);

  // The sentence of that many words whose first word stands at that line of a datafile; the record is valid until the
  // next call. In ascending order of lines a datafile is read once; going back costs 16 KiB, and in a compressed file
  // all that is before. Throws input_error also when there is no such sentence.
  const SentenceRecord& find(std::size_t datafile, std::uint64_t line, std::uint64_t words);

  // Takes all records in the order of the file, beginning with the first after `rewind`; false at the end.
  void rewind();
  bool next(SentenceRecord& record);

 private:
  // A place from which the file can be read on.
  struct Place {
    std::uint64_t byte = 0;        // of the text
    std::uint64_t number = 0;      // of the line there, from 1
    std::size_t datafile = 0;      // of the record there
    std::uint64_t first_line = 0;  // of its sentence in the datafile
  };

  bool _next_line(std::string_view& line);
  bool _next_record();
  void _advance();
  void _index();
  void _go_to(const Place& place);
  [[noreturn]] void _fail(std::string_view message) const;
  [[noreturn]] void _fail_to_find(std::size_t datafile, std::uint64_t line, std::uint64_t words,
                                  const std::string& found) const;

  ByteSource _bytes;
  std::vector<char> _buffer;
  std::size_t _begin = 0;  // of what has not been given away
  std::size_t _end = 0;
  std::uint64_t _byte = 0;    // of the text, where the line in hand begins
  std::uint64_t _next = 0;    // where the next line begins
  std::uint64_t _number = 0;  // of the line in hand
  SentenceRecord _record;
  std::size_t _datafile = 0;  // of the record in hand
  bool _has_record = false;
  std::vector<Datafile> _datafiles;
  std::map<std::string, std::size_t, std::less<>> _by_path;
  std::optional<std::map<FileIdentity, std::size_t>> _by_identity;  // when it was asked for
  std::vector<Place> _places;                                       // by datafile and line, as in the file
};

}  // namespace colx
