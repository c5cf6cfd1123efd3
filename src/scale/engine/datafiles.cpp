#include "scale/engine/datafiles.h"

#include <sys/stat.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include "base/errors.h"
#include "base/files.h"
#include "companion/errors.h"
#include "companion/new_file.h"
#include "scale/engine/content_versions.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// How many bytes of a stream there are, by seeking as ngrex does; negative when that cannot be told.
std::streamoff _length(std::ifstream& stream) {
  stream.seekg(0, std::ios::end);
  const std::streamoff end = stream.tellg();
  stream.clear();
  stream.seekg(0);
  stream.clear();
  return end;
}

// Copies what can be read only once. Returns the bytes copied.
std::uint64_t _copy(std::ifstream& from, const std::string& name, const std::string& to) {
  NewFile output(to);
  std::vector<char> buffer(std::size_t{1} << 20);
  std::uint64_t size = 0;
  do {
    from.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    const auto count = static_cast<std::size_t>(from.gcount());
    output.write({buffer.data(), count});
    size += count;
  } while (from);
  if (from.bad()) throw unreadable(name);
  output.commit();
  return size;
}

// What is known of datafiles that have not changed since.
class KnownVersions {
 public:
  explicit KnownVersions(const std::vector<Datafile>& before) {
    for (const Datafile& datafile : before)
      if (datafile.stamp != 0 && datafile.was_read())
        _versions.emplace(std::pair(datafile.path, datafile.stamp), datafile.version);
  }

  std::optional<std::uint64_t> find(const Datafile& datafile) const {
    const auto found = _versions.find({datafile.path, datafile.stamp});
    return found == _versions.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  std::map<std::pair<std::string, std::uint64_t>, std::uint64_t> _versions;  // by path and stamp
};

// Everything but the version.
Datafile _look_at(const WorkFolder& folder, const std::string& path, std::size_t number) {
  Datafile datafile;
  datafile.path = path;
  datafile.source = path;
  std::ifstream stream = open_input(path);
  if (!stream.is_open()) return datafile;  // scanning it will tell
  datafile.has_bar = _length(stream) >= 0;
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
    datafile.size = static_cast<std::uint64_t>(status.st_size);
    std::string stamp;
    append_fixed(stamp, status.st_size);
    append_fixed(stamp, status.st_mtim.tv_sec);
    append_fixed(stamp, status.st_mtim.tv_nsec);
    // Nobody can set this one back.
    append_fixed(stamp, status.st_ctim.tv_sec);
    append_fixed(stamp, status.st_ctim.tv_nsec);
    append_fixed(stamp, status.st_ino);
    datafile.stamp = checksum(stamp);
  } else {
    // Who opens a pipe a second time may wait for its writer in vain.
    datafile.source = folder.file(fmt::format("copy-{}", number), "datafile");
    datafile.size = _copy(stream, path, datafile.source);
  }
  return datafile;
}

// Gives all datafiles their versions.
void _set_versions(std::vector<Datafile>& datafiles, const std::vector<Datafile>& before, std::size_t jobs) {
  const KnownVersions known(before);
  std::vector<Datafile*> changed;
  std::vector<SizedFile> files;
  for (Datafile& datafile : datafiles) {
    if (const std::optional<std::uint64_t> version = known.find(datafile)) {
      datafile.version = *version;
    } else {
      changed.push_back(&datafile);
      files.push_back({datafile.source, datafile.size});
    }
  }
  const std::vector<std::uint64_t> versions = content_versions(files, jobs);
  for (std::size_t i = 0; i < changed.size(); ++i)
    changed[i]->version = versions[i];
}

}  // namespace

std::vector<Datafile> look_at_datafiles(const WorkFolder& folder, const std::vector<std::string>& paths,
                                        const std::vector<Datafile>& before, std::size_t jobs) {
  std::vector<Datafile> datafiles;
  datafiles.reserve(paths.size());
  for (const std::string& path : paths)
    datafiles.push_back(_look_at(folder, path, datafiles.size()));
  _set_versions(datafiles, before, jobs);
  return datafiles;
}

}  // namespace colx::scale
