#include "scale/engine/plan.h"

#include <numeric>
#include <set>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "base/config.h"
#include "companion/errors.h"
#include "options/params.h"
#include "scale/engine/datafiles.h"
#include "scale/engine/plan_sizes.h"
#include "scale/engine/shard_cutter.h"
#include "spill/damaged_file.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

Manifest::Fields _with_key(std::string key, const std::vector<std::string>& values) {
  Manifest::Fields fields{std::move(key)};
  fields.insert(fields.end(), values.begin(), values.end());
  return fields;
}

std::string _name(const WorkFolder& folder) {
  return folder.file("plan", "done");
}

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

std::uint64_t _bytes_of(const std::vector<Datafile>& datafiles) {
  return std::accumulate(datafiles.begin(), datafiles.end(), std::uint64_t{0},
                         [](std::uint64_t sum, const Datafile& datafile) { return sum + datafile.size; });
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
  plan.planned_bytes = manifest.number("planned_bytes");
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
  manifest.add("planned_bytes", planned_bytes);
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
  plan.datafiles = look_at_datafiles(folder, paths, before ? before->datafiles : std::vector<Datafile>(), wishes.jobs);
  const std::uint64_t bytes = _bytes_of(plan.datafiles);
  if (before && has_outgrown(bytes, before->planned_bytes, plan.memory, before->bucket_bits)) before.reset();
  // Cuts stay as they were, so that what has been counted stays counted.
  plan.shard_size = before ? before->shard_size : wishes.shard_size;
  if (wishes.shard_size != 0) plan.shard_size = wishes.shard_size;
  if (plan.shard_size == 0) plan.shard_size = usual_shard_size(bytes, wishes.jobs);
  // A window of no words lets a datafile be read up to its first sentence only.
  const bool inside = !only_first_sentence();
  const bool as_before = before && before->shard_size == plan.shard_size;
  plan.shards =
      cut_into_shards(plan.datafiles, plan.shard_size, inside, as_before ? _starts(before) : std::set<std::size_t>());

  const std::uint64_t records = expected_records(bytes);
  plan.planned_bytes = before ? before->planned_bytes : bytes;
  plan.bucket_bits = before ? before->bucket_bits : usual_bucket_bits(records, plan.memory, plan.shards.size());
  plan.context_bits = before ? before->context_bits : usual_context_bits(records, plan.memory, plan.shards.size());
  plan.reduces = usual_reduces(records, plan.memory, wishes.jobs, plan.bucket_bits);
  plan.save(folder);
}

}  // namespace colx::scale
