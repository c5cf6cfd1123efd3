#include "import/noted_sentences.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include <fmt/format.h>

#include "companion/errors.h"
#include "import/datafile_writer.h"

namespace colx {

namespace {

// Whether a path is that of a numbered part of an output.
bool _is_part(const std::string& output, std::string_view path) {
  // The number is where the paths of two parts differ, and may have more digits than theirs.
  const std::string first = numbered_path(output, 1);
  const auto behind = std::mismatch(first.rbegin(), first.rend(), numbered_path(output, 2).rbegin()).first;
  const auto number_end = static_cast<std::size_t>(first.rend() - behind);
  const std::size_t suffix = first.size() - number_end;
  const std::size_t number_begin = number_end - 4;
  if (path.size() < number_begin + suffix) return false;
  std::uint64_t number = 0;
  std::from_chars(path.data() + number_begin, path.data() + path.size() - suffix, number);
  return number > 0 && numbered_path(output, number) == path;
}

}  // namespace

NotedSentences::NotedSentences(const std::string& path, const std::string& output, bool is_split,
                               std::vector<FileIdentity>& kept)
    : _path(path) {
  const auto former = regular_file(path);
  if (former && std::find(kept.begin(), kept.end(), former->identity) != kept.end())
    throw output_error(
        fmt::format("cannot write to {}: it is an input or another output, and would be overwritten", path));
  _file.emplace(path,
                [&](std::string_view datafile) { return is_split ? _is_part(output, datafile) : datafile == output; });
  if (former) kept.push_back(former->identity);
}

void NotedSentences::add(const TreebankSentence& sentence, const std::string& source,
                         const std::vector<std::string>& datafiles, std::uint64_t line) {
  // A datafile that has just been created may have taken the name.
  if (_datafiles < datafiles.size()) {
    const auto own = regular_file(_path);
    const auto datafile = regular_file(datafiles.back());
    if (own && datafile && own->identity == datafile->identity)
      throw output_error(fmt::format("cannot write to {}: it is a datafile, and would be overwritten", _path));
    _datafiles = datafiles.size();
  }
  _file->add({datafiles.back(), line, sentence.words.size(), source, sentence.words.front().line, sentence.comments.id,
              sentence.comments.text});
}

}  // namespace colx
