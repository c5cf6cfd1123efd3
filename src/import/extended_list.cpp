#include "import/extended_list.h"

#include <set>

#include "import/datafile_writer.h"

namespace colx {

ExtendedList::ExtendedList(const std::string& path, std::vector<FileIdentity>& kept) : _path(path), _list(path, kept) {
  kept.push_back(_list.identity());
}

std::vector<std::string> ExtendedList::open_record(const Output& output, const ListRecord::Value& tags,
                                                   const ListRecord::Value& relations,
                                                   std::vector<FileIdentity>& kept) {
  _record.emplace(_path, kept);
  kept.push_back(_record->identity());
  _tags = tags.name;
  _relations = relations.name;
  std::set<std::string> own;
  if (output.split == 0) own.insert(output.path);
  for (std::uint64_t part = 1; output.split != 0 && part <= _list.entries(); ++part)
    own.insert(numbered_path(output.path, part));
  return _list.names_others(own) ? _record->compare(tags, relations) : std::vector<std::string>();
}

void ExtendedList::add(const std::vector<std::string>& paths) {
  _list.add(paths);
  // Parts of a former import that this one did not write are others as well.
  if (_record) _record->write(_tags, _relations, _list.names_others({paths.begin(), paths.end()}));
}

}  // namespace colx
