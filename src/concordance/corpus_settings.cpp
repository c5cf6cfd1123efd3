#include "concordance/corpus_settings.h"

#include <cstddef>
#include <limits>
#include <utility>

#include <fmt/format.h>

#include "base/config.h"
#include "base/errors.h"
#include "base/files.h"
#include "companion/errors.h"

namespace colx::concordance {

std::string path_of(const GivenOption& given) {
  if (given.value.empty()) reject(given, "the name of a FILE");
  return given.value;
}

std::string mask_of(const GivenOption& given) {
  if (!settings::check_mask(given.value.c_str())) reject(given, "a mask of * and -");
  return given.value;
}

std::uint32_t radius_of(const GivenOption& given) {
  constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();
  const std::size_t radius = whole_number(given, 0);
  if (radius > most) reject(given, fmt::format("at most {}", most));
  return static_cast<std::uint32_t>(radius);
}

std::vector<ListedDatafile> datafiles_of(const CorpusSettings& settings) {
  std::vector<ListedDatafile> datafiles;
  std::string fault;  // of the first that will not do
  std::size_t faults = 0;
  const auto take = [&](ListedDatafile datafile) {
    if (!datafile.is_open || !regular_file(datafile.path).has_value()) {
      if (faults++ == 0)
        fault = fmt::format("{}: the datafile {} {}", settings.list, datafile.path,
                            datafile.is_open ? "is no regular file, and cannot be read again where sentences are shown"
                                             : "cannot be opened for reading");
    }
    datafiles.push_back(std::move(datafile));
  };
  try {
    if (!read_datafile_list(settings.list, settings.prefix, take))
      throw input_error(fmt::format("cannot open {} for reading", settings.list));
  } catch (const fatal_error&) {
    throw input_error(fmt::format("cannot read {} to its end", settings.list));
  }
  if (datafiles.empty()) throw input_error(fmt::format("{}: expected paths of datafiles, found none", settings.list));
  if (faults > 1) fault += fmt::format("; {} of the list will not do", faults);
  if (faults > 0) throw input_error(fault);
  return datafiles;
}

std::vector<std::string> inputs_of(const CorpusSettings& settings, const std::vector<ListedDatafile>& datafiles) {
  std::vector<std::string> inputs = {settings.list, settings.rules};
  for (const ListedDatafile& datafile : datafiles)
    inputs.push_back(datafile.path);
  return inputs;
}

std::string note_on(const CorpusSettings& settings) {
  if (settings.rules.empty() || !settings.mask.empty()) return {};
  return "the rules of --rules are not applied, as ngrex does not apply them without a tag mask (--mask)";
}

}  // namespace colx::concordance
