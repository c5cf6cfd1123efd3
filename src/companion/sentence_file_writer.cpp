#include "companion/sentence_file_writer.h"

#include <cstddef>

#include "base/files.h"
#include "companion/sentence_file.h"

namespace colx {

namespace {

constexpr std::size_t lines_size = std::size_t{1} << 18;

}  // namespace

SentenceFileWriter::SentenceFileWriter(const std::string& path,
                                       const std::function<bool(std::string_view datafile)>& replaced)
    : _file(path) {
  _lines.append(sentence_file_header).append("\n");
  const auto former = regular_file(path);
  if (_file.temporary_path().empty() || !former || former->size == 0) return;
  SentenceFile records(path);
  for (SentenceRecord record; records.next(record);)
    if (!replaced(record.datafile)) add(record);
}

void SentenceFileWriter::_flush() {
  _file.write(_lines);
  _lines.clear();
}

void SentenceFileWriter::add(const SentenceRecord& record) {
  append_sentence_record(_lines, record);
  if (_lines.size() >= lines_size) _flush();
}

void SentenceFileWriter::commit() {
  _flush();
  _file.commit();
}

}  // namespace colx
