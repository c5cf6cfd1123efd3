#include "options/output_paths.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <utility>

#include "base/config.h"
#include "base/errors.h"
#include "base/files.h"

namespace colx {

namespace {

// Where a regular file is, or would be made.
struct Place {
  FileIdentity identity;  // of the file, or of the folder in which it would be made
  std::string name;       // in that folder; empty for a file that is there

  bool operator==(const Place&) const = default;
};

// As many symbolic links as the system itself follows.
constexpr int most_links = 40;

// Nothing for what is no regular file, and for what cannot be made.
std::optional<Place> _place(std::filesystem::path path) {
  for (int links = 0; links <= most_links; ++links) {
    if (const auto file = regular_file(path.string())) return Place{file->identity, ""};
    std::error_code none;
    // A link whose end is not there: opening it would make its end.
    const std::filesystem::path target = std::filesystem::read_symlink(path, none);
    if (none) break;
    path = path.parent_path() / target;
  }
  struct stat status {};
  if (!path.has_filename() || ::stat(path.c_str(), &status) == 0 || errno != ENOENT) return std::nullopt;
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  if (::stat(folder.c_str(), &status) != 0) return std::nullopt;
  return Place{{status.st_dev, status.st_ino}, path.filename().string()};
}

}  // namespace

void check_output_paths(const std::vector<std::string>& datafiles) {
  std::vector<std::pair<const char*, Place>> outputs;
  for (const char* const path : {settings::output_file, settings::context_output_file, settings::stats_file,
                                 settings::morphologic_filter_stats_file}) {
    if (path == nullptr) continue;
    if (auto place = _place(path)) outputs.emplace_back(path, std::move(*place));
  }
  if (outputs.empty()) return;

  const auto check_input = [&](const std::string& input) {
    const auto place = _place(input);
    for (const auto& [path, output] : outputs)
      if (place == output) throw fatal_error(std::string("Output file is also an input: ") + path + "!");
  };
  for (const char* const input :
       {settings::input_file, settings::morphologic_filter_file, settings::context_filter_file})
    if (input != nullptr) check_input(input);
  std::for_each(datafiles.begin(), datafiles.end(), check_input);

  for (auto output = outputs.begin(); output != outputs.end(); ++output)
    if (std::any_of(outputs.begin(), output, [&](const auto& earlier) { return earlier.second == output->second; }))
      throw fatal_error(std::string("Two outputs have the same path: ") + output->first + "!");
}

}  // namespace colx
