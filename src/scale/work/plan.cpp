#include "scale/work/plan.h"

#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "base/config.h"
#include "base/errors.h"
#include "base/files.h"
#include "companion/errors.h"
#include "companion/new_file.h"
#include "options/params.h"
#include "scale/work/content_versions.h"
#include "spill/damaged_file.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

constexpr std::uint64_t least_shard = std::uint64_t{1} << 20;
constexpr std::uint64_t largest_shard = std::uint64_t{256} << 20;
constexpr std::size_t most_datafiles_of_a_shard = 1024;
constexpr unsigned most_bucket_bits = 18;
constexpr std::uint64_t least_records_of_a_bucket = 16;
constexpr std::uint64_t most_records_of_a_bucket = 8192;
constexpr std::uint64_t usual_sentence = 20;  // in words

Manifest::Fields _with_key(std::string key, const std::vector<std::string>& values) {
  Manifest::Fields fields{std::move(key)};
  fields.insert(fields.end(), values.begin(), values.end());
  return fields;
}

std::string _name(const WorkFolder& folder) {
  return folder.file("plan", "done");
}

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
  explicit KnownVersions(const std::optional<Plan>& before) {
    if (!before) return;
    for (const Datafile& datafile : before->datafiles)
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

// Gives all datafiles their versions. One that cannot be read has none; the scan will find the fault where it is.
void _set_versions(std::vector<Datafile>& datafiles, const std::optional<Plan>& before, std::size_t jobs) {
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

// A size between the least and the largest, in shards enough for everybody to have several.
std::uint64_t _usual_shard_size(std::uint64_t total, const PlanWishes& wishes) {
  const std::uint64_t even = total / (std::max<std::uint64_t>(wishes.jobs, 1) * 2) + 1;
  return std::clamp(even, least_shard, largest_shard);
}

// Cuts large datafiles, inside too if that is wanted, and puts small ones together that follow one another.
class Cutter {
 public:
  // `starts`: datafiles with which a shard has to begin, the last of which is the first that is new. The others may
  // have grown a bit and stay together all the same, as every shard behind a new cut would be another one.
  Cutter(const std::vector<Datafile>& datafiles, std::uint64_t shard_size, bool inside, std::set<std::size_t> starts)
      : _datafiles(datafiles), _shard_size(shard_size), _inside(inside), _starts(std::move(starts)) {}

  std::vector<Shard> cut() {
    for (std::size_t d = 0; d < _datafiles.size(); ++d) {
      const std::uint64_t size = _datafiles[d].size;
      if (_fits(d)) {
        ++_shards.back().datafiles;
        _held += size;
      } else if (_inside && size > _shard_size) {
        _cut_inside(d);
        _held = 2 * _shard_size;
      } else {
        _shards.push_back({d, 1, 0, size, true});
        _held = size;
      }
      if (_shards.back().datafiles > 1) _shards.back().end = 0;
    }
    return std::move(_shards);
  }

 private:
  // Whether the last shard can take a datafile as well.
  bool _fits(std::size_t d) const {
    if (_shards.empty() || _starts.contains(d) || _shards.back().datafiles >= most_datafiles_of_a_shard) return false;
    const std::uint64_t most = !_starts.empty() && d < *_starts.rbegin() ? 2 * _shard_size : _shard_size;
    return _held < most && _held + _datafiles[d].size <= most;
  }

  void _cut_inside(std::size_t d) {
    const std::uint64_t size = _datafiles[d].size;
    for (std::uint64_t begin = 0; begin < size; begin += _shard_size) {
      const std::uint64_t end = std::min(begin + _shard_size, size);
      _shards.push_back({d, 1, begin, end, end == size});
    }
  }

  const std::vector<Datafile>& _datafiles;
  std::uint64_t _shard_size;
  bool _inside;
  std::set<std::size_t> _starts;
  std::vector<Shard> _shards;
  std::uint64_t _held = 0;  // bytes of the last shard
};

// Where the shards of before begin, and where they end: what has been counted stays counted when the list grows.
std::set<std::size_t> _starts(const std::optional<Plan>& before) {
  std::set<std::size_t> starts;
  if (!before) return starts;
  for (const Shard& shard : before->shards)
    starts.insert(shard.datafile);
  starts.insert(before->datafiles.size());
  return starts;
}

// The plan that stands in the folder. One that is damaged is made again as if there had been none: every task still
// tells by its key whether what it has left is right.
std::optional<Plan> _before(const WorkFolder& folder) try { return Plan::load(folder); } catch (const damaged_file&) {
  return std::nullopt;
}

// Tells apart what makes the counts different: N, mask, rules, and the contexts with their window.
std::uint64_t _counting(const Plan& plan) {
  Manifest options;
  options.add("n", settings::n);
  const char* const mask = settings::morphologic_tag_mask;
  options.add({"mask", mask == nullptr ? "" : mask});
  options.add("contexts", settings::context_tracing_on());
  options.add("mode", settings::context_window.mode);
  options.add("size", settings::context_window.size);
  for (const std::vector<std::string>& rule : plan.morphologic_rules)
    options.add(_with_key("rule", rule));
  for (const std::string& rule : plan.context_rules)
    options.add({"context_rule", rule});
  return options.mark();
}

// So many that the contexts of a bucket, of one type, take a sixteenth of the memory, as long as the indexes of all
// runs, which are in memory when the runs are merged, take no more than an eighth.
unsigned _context_bits(std::uint64_t records, const Plan& plan) {
  if (!settings::context_tracing_on()) return 0;
  constexpr std::uint64_t bytes_of_entry = 16;
  constexpr std::uint64_t most_entries = std::uint64_t{16} << 10;
  const std::uint64_t types = (std::uint64_t{1} << settings::n) - 1;
  const ContextWindow& window = settings::context_window;
  const std::uint64_t words = window.mode == ContextWindow::words ? std::uint64_t{2} * window.size
                                                                  : usual_sentence * (window.size + std::uint64_t{1});
  const std::uint64_t bytes = records * (words * sizeof(std::uint32_t) + 6ULL * settings::n);
  const std::uint64_t runs = plan.shards.size() + records * (24 + 40 * types) / std::max<std::uint64_t>(plan.memory, 1);
  unsigned bits = 0;
  while ((bytes >> bits) > plan.memory / 16 && (types << (bits + 1)) <= most_entries &&
         (runs * types * bytes_of_entry << (bits + 1)) <= plan.memory / 8)
    ++bits;
  return bits;
}

// Throws std::logic_error for lines that are not those of a plan.
Plan _from(const Manifest& manifest) {
  Plan plan;
  for (const Manifest::Fields& line : manifest.all("word"))
    plan.words.push_back(line.at(1));
  for (const Manifest::Fields& line : manifest.all("rule"))
    plan.morphologic_rules.emplace_back(line.begin() + 1, line.end());
  for (const Manifest::Fields& line : manifest.all("context_rule"))
    plan.context_rules.push_back(line.at(1));
  plan.shard_size = manifest.number("shard_size");
  plan.memory = manifest.number("memory");
  plan.bucket_bits = static_cast<unsigned>(manifest.number("bucket_bits"));
  plan.reduces = manifest.number("reduces");
  plan.context_bits = static_cast<unsigned>(manifest.number("context_bits"));
  plan.counting = manifest.number("counting");
  for (const Manifest::Fields& line : manifest.all("datafile"))
    plan.datafiles.push_back({line.at(1), line.at(2), to_number(line.at(3)), to_number(line.at(4)),
                              to_number(line.at(5)), line.at(6) == "1"});
  for (const Manifest::Fields& line : manifest.all("shard"))
    plan.shards.push_back({to_number(line.at(1)), to_number(line.at(2)), to_number(line.at(3)), to_number(line.at(4)),
                           line.at(5) == "1"});
  return plan;
}

}  // namespace

std::uint64_t Plan::key_of_shard(std::size_t shard) const {
  const Shard& piece = shards[shard];
  std::string key;
  append_fixed(key, counting);
  append_fixed(key, piece.begin);
  append_fixed(key, piece.end);
  append_fixed(key, piece.is_last);
  for (std::size_t d = piece.datafile; d < piece.end_datafile(); ++d) {
    const Datafile& datafile = datafiles[d];
    append_fixed(key, datafile.version);
    append_fixed(key, datafile.size);
    append_fixed(key, datafile.has_bar);
    key += datafile.path + '\n' + datafile.source + '\n';
  }
  return checksum(key);
}

void Plan::apply_options() const {
  std::vector<const char*> argv;
  argv.reserve(words.size());
  for (const std::string& word : words)
    argv.push_back(word.c_str());
  const int count = static_cast<int>(argv.size());
  for (int i = 0; i < count;)
    i += std::max(take_option(count, argv.data(), i), 1);
}

void Plan::save(const WorkFolder& folder) const {
  Manifest manifest;
  manifest.add({"task", "plan"});
  for (const std::string& word : words)
    manifest.add({"word", word});
  for (const std::vector<std::string>& rule : morphologic_rules)
    manifest.add(_with_key("rule", rule));
  for (const std::string& rule : context_rules)
    manifest.add({"context_rule", rule});
  manifest.add("shard_size", shard_size);
  manifest.add("memory", memory);
  manifest.add("bucket_bits", bucket_bits);
  manifest.add("reduces", reduces);
  manifest.add("context_bits", context_bits);
  manifest.add("counting", counting);
  for (const Datafile& datafile : datafiles)
    manifest.add({"datafile", datafile.path, datafile.source, std::to_string(datafile.size),
                  std::to_string(datafile.version), std::to_string(datafile.stamp), datafile.has_bar ? "1" : "0"});
  for (const Shard& shard : shards)
    manifest.add({"shard", std::to_string(shard.datafile), std::to_string(shard.datafiles), std::to_string(shard.begin),
                  std::to_string(shard.end), shard.is_last ? "1" : "0"});
  manifest.save(_name(folder));
}

std::optional<Plan> Plan::load(const WorkFolder& folder) {
  const std::optional<Manifest> manifest = Manifest::load(_name(folder));
  if (!manifest) return std::nullopt;
  try {
    return _from(*manifest);
  } catch (const std::logic_error&) {  // of a field that is missing, or is no number
    throw damaged_file(_name(folder), "makes no sense");
  }
}

bool only_first_sentence() {
  return settings::context_window.mode == ContextWindow::words && settings::context_window.size == 0;
}

void make_plan(const WorkFolder& folder, const std::vector<std::string>& paths, const PlanWishes& wishes, Plan& plan) {
  std::optional<Plan> before = _before(folder);
  plan.counting = _counting(plan);
  if (before && before->counting != plan.counting) {
    if (!wishes.may_start_over)
      throw usage_error(fmt::format(
          "the folder {} holds counts for other options (-n, -m, -f, -c, -cf, -cs or -cw): name another folder",
          folder.path()));
    before.reset();
  }
  plan.memory = wishes.memory;
  std::uint64_t total = 0;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    plan.datafiles.push_back(_look_at(folder, paths[i], i));
    total += plan.datafiles.back().size;
  }
  _set_versions(plan.datafiles, before, wishes.jobs);
  // Cuts stay as they were, so that what has been counted stays counted.
  plan.shard_size = before ? before->shard_size : wishes.shard_size;
  if (wishes.shard_size != 0) plan.shard_size = wishes.shard_size;
  if (plan.shard_size == 0) plan.shard_size = _usual_shard_size(total, wishes);
  // A window of no words lets a datafile be read up to its first sentence only.
  const bool inside = !only_first_sentence();
  const bool as_before = before && before->shard_size == plan.shard_size;
  plan.shards =
      Cutter(plan.datafiles, plan.shard_size, inside, as_before ? _starts(before) : std::set<std::size_t>()).cut();

  // A word takes twenty bytes or more; of larger N-grams there are some more than words.
  const std::uint64_t records = total / 20 * (settings::n > 2 ? 2U * (settings::n - 2U) : 1U);
  // Buckets are added up in memory one by one, and are what reductions are made of.
  const std::uint64_t bytes_of_record = 6ULL * settings::n + 64;
  const std::uint64_t of_a_bucket =
      std::clamp(plan.memory / 2 / bytes_of_record, least_records_of_a_bucket, most_records_of_a_bucket);
  while (plan.bucket_bits < most_bucket_bits && (records >> plan.bucket_bits) > of_a_bucket)
    ++plan.bucket_bits;
  // The indexes of all runs are in memory when the runs are added up.
  constexpr std::uint64_t bytes_of_entry = 16;
  while (plan.bucket_bits > 0 && (plan.shards.size() * bytes_of_entry << plan.bucket_bits) > plan.memory / 8)
    --plan.bucket_bits;
  if (before) plan.bucket_bits = before->bucket_bits;
  plan.context_bits = before ? before->context_bits : _context_bits(records, plan);
  const std::uint64_t by_memory = records * bytes_of_record / std::max<std::uint64_t>(plan.memory / 2, 1) + 1;
  plan.reduces = std::clamp<std::uint64_t>(std::max<std::uint64_t>(by_memory, wishes.jobs), 1,
                                           std::uint64_t{1} << plan.bucket_bits);
  plan.save(folder);
}

}  // namespace colx::scale
