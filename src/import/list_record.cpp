#include "import/list_record.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <sstream>
#include <string_view>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "companion/errors.h"
#include "import/sentence.h"

namespace colx {

ListRecord::ListRecord(const std::string& list, const std::vector<FileIdentity>& kept)
    : _list(list), _path(list + ".import") {
  const auto refuse = [&](const std::string& reason) {
    throw output_error(fmt::format("cannot write {}, how the list is made: {}", _path, reason));
  };
  // Opening a pipe would wait for its other end.
  _is_there = ::access(_path.c_str(), F_OK) == 0;
  if (_is_there && !regular_file(_path).has_value()) refuse("it is no regular file");
  const int number = ::open(_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (number < 0) refuse(system_reason());
  _file = Descriptor(number);
  const auto file = regular_file(_file);
  if (!file.has_value()) refuse("it is no regular file");
  _identity = file->identity;
  if (std::find(kept.begin(), kept.end(), _identity) != kept.end()) refuse("it is an input or the list");
  std::string content;
  std::array<char, 4096> buffer;
  while (const std::size_t size = _file.read_some(buffer.data(), buffer.size(), _path))
    content.append(buffer.data(), size);
  _read(content);
  _remove = !_is_there;
}

ListRecord::~ListRecord() {
  if (_remove) ::unlink(_path.c_str());
}

void ListRecord::_read(const std::string& content) {
  static const std::set<std::string> tags{"xpos", "upos", "feats"};
  static const std::set<std::string> relations{"functions", "keep"};
  std::istringstream lines(content);
  std::string line;
  for (std::uint64_t number = 1; std::getline(lines, line); ++number) {
    std::istringstream words(line);
    std::string name;
    words >> name;
    const bool are_tags = name == "tags:";
    const std::set<std::string>& known = are_tags ? tags : relations;
    bool is_known = are_tags || name == "relations:";
    for (std::string value; words >> value;) {
      is_known = is_known && known.contains(value);
      (are_tags ? _tags : _relations).insert(value);
    }
    if (!is_known)
      throw output_error(
          fmt::format("{}:{}: expected \"tags: \" with xpos, upos or feats, or \"relations: \" with functions or keep, "
                      "found {}; without that file the list is extended unchecked",
                      _path, number, in_quotes(line)));
  }
}

std::vector<std::string> ListRecord::compare(const Value& tags, const Value& relations) const {
  std::vector<std::string> notes;
  // An import that was interrupted may have left an empty file.
  if (_tags.empty() && _relations.empty())
    notes.push_back(fmt::format("{} is {}; whether the other datafiles of {} were made alike is not known", _path,
                                _is_there ? "empty" : "not there", _list));
  _compare("tag", _tags, tags, notes);
  _compare("relations", _relations, relations, notes);
  return notes;
}

void ListRecord::_compare(const std::string& option, const std::set<std::string>& theirs, const Value& ours,
                          std::vector<std::string>& notes) const {
  if (theirs.empty() || theirs.contains(ours.name)) return;
  const std::string others = fmt::format("{}", fmt::join(theirs, ", "));
  if (!ours.is_given)
    throw usage_error(fmt::format(
        "{0} says that the datafiles of {1} were made with --{2} {3}, this one would be made with --{2} {4}{5}; "
        "give --{2} to say which of them is meant",
        _path, _list, option, others, ours.name, ours.reason.empty() ? "" : fmt::format(" ({})", ours.reason)));
  notes.push_back(fmt::format("the other datafiles of {0} were made with --{1} {2}, this one with --{1} {3}", _list,
                              option, others, ours.name));
}

void ListRecord::write(const std::string& tags, const std::string& relations, bool besides) {
  if (!besides) {
    _tags.clear();
    _relations.clear();
  }
  _tags.insert(tags);
  _relations.insert(relations);
  _remove = false;
  if (::ftruncate(_file.number(), 0) != 0 || ::lseek(_file.number(), 0, SEEK_SET) != 0)
    throw output_error(fmt::format("cannot write {}: {}", _path, system_reason()));
  _file.write_fully(fmt::format("tags: {}\nrelations: {}\n", fmt::join(_tags, " "), fmt::join(_relations, " ")), _path);
  _file.close(_path);
}

}  // namespace colx
