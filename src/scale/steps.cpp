#include "scale/steps.h"

#include <memory>
#include <vector>

#include "base/config.h"
#include "base/errors.h"
#include "scale/contexts/collect_task.h"
#include "scale/contexts/context_layout.h"
#include "scale/contexts/format_task.h"
#include "scale/contexts/merge_task.h"
#include "scale/counting/arrange_task.h"
#include "scale/counting/count_task.h"
#include "scale/counting/map_task.h"
#include "scale/counting/order_task.h"
#include "scale/counting/parts.h"
#include "scale/counting/reduce_task.h"
#include "scale/shards/number_task.h"
#include "scale/shards/scan_task.h"

namespace colx::scale {

namespace {

// What is known when the shards are numbered.
struct Numbered {
  std::vector<NumberedShard> shards;
  std::vector<bool> used;
  std::vector<std::size_t> used_shards;
};

std::shared_ptr<const Numbered> _numbered(const WorkFolder& folder) {
  Numbering numbering = Numbering::from(folder.result(number_name));
  if (!numbering.failure.empty()) throw fatal_error(numbering.failure);
  auto numbered = std::make_shared<Numbered>();
  numbered->shards = std::move(numbering.shards);
  for (std::size_t k = 0; k < numbered->shards.size(); ++k) {
    numbered->used.push_back(numbered->shards[k].used);
    if (numbered->shards[k].used) numbered->used_shards.push_back(k);
  }
  return numbered;
}

// What is known when the N-grams are reduced, and arranged.
struct Arranged {
  Layout layout;
  std::vector<Part> parts;
  std::vector<Pairs> pairs;
};

std::shared_ptr<const Arranged> _arranged(const WorkFolder& folder, const Plan& plan) {
  auto arranged = std::make_shared<Arranged>();
  arranged->layout = Layout::from(folder, plan);
  arranged->parts = parts_of(folder, plan, arranged->layout);
  arranged->pairs = count_tasks(plan, arranged->layout);
  return arranged;
}

Step _map(const WorkFolder& folder, const Plan& plan) {
  const auto numbered = _numbered(folder);
  return {numbered->used_shards.size(), [&folder, &plan, numbered](std::size_t task) {
            const std::size_t k = numbered->used_shards[task];
            return Task{map_name(k), map_key(folder, plan, k, numbered->shards[k]),
                        [&folder, &plan, numbered, k] { map_shard(folder, plan, k, numbered->shards[k]); }};
          }};
}

Step _reduce(const WorkFolder& folder, const Plan& plan) {
  const auto numbered = _numbered(folder);
  return {plan.reduces, [&folder, &plan, numbered](std::size_t task) {
            return Task{reduce_name(task), reduce_key(folder, plan, numbered->used, task),
                        [&folder, &plan, numbered, task] { reduce(folder, plan, numbered->used, task); }};
          }};
}

Step _order(const WorkFolder& folder, const Plan& plan) {
  const auto arranged = _arranged(folder, plan);
  return {arranged->parts.size(), [&folder, &plan, arranged](std::size_t task) {
            const Part& part = arranged->parts[task];
            return Task{order_name(task), order_key(folder, plan, part), [&folder, &plan, arranged, task] {
                          order(folder, plan, arranged->layout, arranged->parts[task], task);
                        }};
          }};
}

Step _count(const WorkFolder& folder, const Plan& plan) {
  const auto arranged = _arranged(folder, plan);
  return {arranged->pairs.size(), [&folder, &plan, arranged](std::size_t task) {
            const Pairs& pairs = arranged->pairs[task];
            const std::size_t parts = arranged->parts.size();
            return Task{count_name(task), count_key(folder, plan, pairs, parts),
                        [&folder, &plan, arranged, pairs, parts, task] {
                          count_patterns(folder, plan, arranged->layout, pairs, parts, task);
                        }};
          }};
}

Step _collect(const WorkFolder& folder, const Plan& plan) {
  const auto numbered = _numbered(folder);
  return {numbered->used_shards.size(), [&folder, &plan, numbered](std::size_t task) {
            const std::size_t k = numbered->used_shards[task];
            return Task{collect_name(k), collect_key(folder, plan, numbered->shards, k),
                        [&folder, &plan, numbered, k] { collect(folder, plan, numbered->shards, k); }};
          }};
}

Step _merge(const WorkFolder& folder, const Plan& plan) {
  const auto layout =
      std::make_shared<const ContextLayout>(ContextLayout::from(folder, plan, _numbered(folder)->shards));
  const std::uint64_t mark = merges_mark(folder, plan, *layout);
  return {layout->merges.size(), [&folder, &plan, layout, mark](std::size_t task) {
            return Task{merge_name(task), merge_key(mark, layout->merges[task]),
                        [&folder, &plan, layout, mark, task] { merge(folder, plan, *layout, mark, task); }};
          }};
}

Step _format(const WorkFolder& folder, const Plan& plan) {
  const auto layout =
      std::make_shared<const ContextLayout>(ContextLayout::from(folder, plan, _numbered(folder)->shards));
  const std::uint64_t mark = formats_mark(folder, *layout);
  const auto parts = std::make_shared<const std::vector<ContextPart>>(
      context_parts(merged_bytes(folder, plan, *layout), context_part_bytes(plan)));
  return {parts->size(), [&folder, layout, mark, parts](std::size_t task) {
            const ContextPart& part = (*parts)[task];
            return Task{format_name(task), format_key(mark, part), [&folder, layout, mark, parts, task] {
                          format_contexts(folder, *layout, mark, (*parts)[task], task);
                        }};
          }};
}

}  // namespace

Step step_of(std::string_view name, const WorkFolder& folder, const Plan& plan) {
  if (name == "scan") {
    return {
        plan.shards.size(), [&](std::size_t task) {
          return Task{scan_name(task), plan.key_of_shard(task), [&folder, &plan, task] { scan(folder, plan, task); }};
        }};
  }
  if (name == "number") {
    return {1, [&](std::size_t) {
              return Task{number_name, number_key(folder, plan), [&folder, &plan] { number_shards(folder, plan); }};
            }};
  }
  if (name == "map") return _map(folder, plan);
  if (name == "reduce") return _reduce(folder, plan);
  if (name == "arrange") {
    return {plan.reduces, [&](std::size_t task) {
              return Task{arrange_name(task), arrange_key(folder, plan),
                          [&folder, &plan, task] { arrange(folder, plan, task); }};
            }};
  }
  if (name == "order") return _order(folder, plan);
  if (name == "count") return _count(folder, plan);
  if (!settings::context_tracing_on()) return {};
  if (name == "collect") return _collect(folder, plan);
  if (name == "merge") return _merge(folder, plan);
  return _format(folder, plan);
}

}  // namespace colx::scale
