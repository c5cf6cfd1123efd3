#include "scale/pipeline.h"

#include <vector>

#include "base/config.h"
#include "base/errors.h"
#include "companion/errors.h"
#include "scale/arrange_task.h"
#include "scale/context_task.h"
#include "scale/count_task.h"
#include "scale/layout.h"
#include "scale/map_task.h"
#include "scale/number_task.h"
#include "scale/order_task.h"
#include "scale/parts.h"
#include "scale/reduce_task.h"
#include "scale/scan_task.h"
#include "scale/task_pool.h"
#include "spill/damaged_file.h"

namespace colx::scale {

namespace {

// After so many damaged files the disk, or the program, is to blame.
constexpr int most_attempts = 64;

// One attempt at all stages; without jobs, a look at whether all is done.
class Pipeline {
 public:
  Pipeline(const WorkFolder& folder, const Plan& plan, std::size_t jobs) : _folder(folder), _plan(plan), _jobs(jobs) {}

  void read(bool tell) {
    std::vector<Task> tasks;
    for (std::size_t k = 0; k < _plan.shards.size(); ++k)
      tasks.push_back({scan_name(k), _plan.key_of_shard(k), [this, k] { scan(_folder, _plan, k); }});
    _do(tasks);
    _do({{number_name, number_key(_folder, _plan), [this] { number_shards(_folder, _plan); }}});
    const Manifest manifest = _folder.result(number_name);
    _numbering = Numbering::from(manifest);
    for (const NumberedShard& shard : _numbering.shards)
      _used.push_back(shard.used);
    if (tell) tell_messages(_folder, manifest);
    if (!_numbering.failure.empty()) throw fatal_error(_numbering.failure);
  }

  void count() {
    std::vector<Task> tasks;
    for (std::size_t k = 0; k < _plan.shards.size(); ++k) {
      if (!_used[k]) continue;
      const std::uint64_t sentences = _numbering.shards[k].extracted_sentences;
      tasks.push_back({map_name(k), map_key(_folder, _plan, k, sentences),
                       [this, k, sentences] { map_shard(_folder, _plan, k, sentences); }});
    }
    _do(tasks);

    tasks.clear();
    for (std::size_t task = 0; task < _plan.reduces; ++task)
      tasks.push_back({reduce_name(task), reduce_key(_folder, _plan, _used, task),
                       [this, task] { reduce(_folder, _plan, _used, task); }});
    _do(tasks);

    tasks.clear();
    for (std::size_t task = 0; task < _plan.reduces; ++task)
      tasks.push_back(
          {arrange_name(task), arrange_key(_folder, _plan), [this, task] { arrange(_folder, _plan, task); }});
    _do(tasks);

    const Layout layout = Layout::from(_folder, _plan);
    const std::vector<Part> parts = parts_of(_folder, _plan, layout);
    tasks.clear();
    for (std::size_t part = 0; part < parts.size(); ++part)
      tasks.push_back({order_name(part), order_key(_folder, _plan, parts[part]),
                       [this, &layout, &parts, part] { order(_folder, _plan, layout, parts[part], part); }});
    _do(tasks);

    const std::vector<Pairs> pairs = count_tasks(_plan, layout);
    tasks.clear();
    for (std::size_t task = 0; task < pairs.size(); ++task)
      tasks.push_back({count_name(task), count_key(_folder, _plan, pairs[task], parts.size()),
                       [this, &layout, &parts, &pairs, task] {
                         count_patterns(_folder, _plan, layout, pairs[task], parts.size(), task);
                       }});
    if (settings::context_tracing_on())
      tasks.push_back({context_name, context_key(_folder), [this] { collect_contexts(_folder, _plan); }});
    _do(tasks);
  }

 private:
  void _do(const std::vector<Task>& tasks) const {
    if (_jobs > 0) {
      do_tasks(_folder, tasks, _jobs);
    } else if (!all_done(_folder, tasks)) {
      throw input_error("the counts in the folder " + _folder.path() +
                        " are not complete: ngrex-scale run has not ended");
    }
  }

  const WorkFolder& _folder;
  const Plan& _plan;
  std::size_t _jobs;
  Numbering _numbering;
  std::vector<bool> _used;
};

}  // namespace

void count_all(const WorkFolder& folder, const Plan& plan, std::size_t jobs, const std::function<void()>& use) {
  bool told = false;
  for (int attempt = 1;; ++attempt) {
    try {
      Pipeline pipeline(folder, plan, jobs);
      pipeline.read(!told);
      told = true;
      pipeline.count();
      use();
      return;
    } catch (const damaged_file& error) {
      const std::string maker = folder.maker(error.path());
      if (maker.empty() || maker == "plan" || attempt == most_attempts) throw;
      folder.forget(maker);
    }
  }
}

void check_counted(const WorkFolder& folder, const Plan& plan) {
  Pipeline pipeline(folder, plan, 0);
  pipeline.read(false);
  pipeline.count();
}

}  // namespace colx::scale
