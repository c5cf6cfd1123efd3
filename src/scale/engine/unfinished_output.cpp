#include "scale/engine/unfinished_output.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <stdexcept>

#include "companion/errors.h"
#include "spill/manifest.h"

namespace colx::scale {

namespace {

std::string _name_in(const WorkFolder& folder) {
  return folder.file("output", "unfinished");
}

// Tells a file from another one that has come to its name.
std::string _identity(const struct stat& status) {
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

}  // namespace

UnfinishedOutput::UnfinishedOutput(const WorkFolder& folder) : _name(_name_in(folder)) {}

UnfinishedOutput::~UnfinishedOutput() {
  ::unlink(_name.c_str());
}

void UnfinishedOutput::expect(const std::string& temporary) const {
  _note(temporary, "");
}

void UnfinishedOutput::remember(const NewFile& file) const {
  struct stat status {};
  if (file.temporary_path().empty() || ::lstat(file.temporary_path().c_str(), &status) != 0) return;
  _note(file.temporary_path(), _identity(status));
}

void UnfinishedOutput::_note(const std::string& temporary, const std::string& identity) const {
  Manifest manifest;
  manifest.add({"file", std::filesystem::absolute(temporary).string(), identity});
  try {
    manifest.save(_name);
  } catch (const output_error&) {
    // A file that is left behind is found by its name as well.
  }
}

void remove_unfinished_output(const WorkFolder& folder) {
  const std::string name = _name_in(folder);
  try {
    const std::optional<Manifest> manifest = Manifest::load(name);
    if (!manifest) return;
    for (const Manifest::Fields& file : manifest->all("file")) {
      struct stat status {};
      if (::lstat(file.at(1).c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
      const bool is_it = file.at(2).empty() ? status.st_size == 0 : _identity(status) == file.at(2);
      if (is_it) ::unlink(file.at(1).c_str());
    }
  } catch (const std::exception&) {
    // Then nobody knows what there was.
  }
  ::unlink(name.c_str());
}

}  // namespace colx::scale
