#include "scale/counting/parts.h"

#include "scale/counting/arrange_task.h"

namespace colx::scale {

std::vector<Part> parts_of(const WorkFolder& folder, const Plan& plan, const Layout& layout) {
  std::vector<std::uint64_t> sizes(layout.ranges, 0);
  const std::uint64_t key = arrange_key(folder, plan);
  for (std::size_t task = 0; task < plan.reduces; ++task) {
    const ArrangeResult result = ArrangeResult::from(folder.result(arrange_name(task), key));
    for (std::size_t range = 0; range < layout.ranges; ++range)
      sizes[range] += result.records[range];
  }
  std::vector<Part> parts(1);
  for (std::size_t range = 0; range < layout.ranges; ++range) {
    if (parts.back().records > 0 && parts.back().records + sizes[range] > layout.most_records)
      parts.push_back({range, range, 0});
    parts.back().end_range = range + 1;
    parts.back().records += sizes[range];
  }
  return parts;
}

}  // namespace colx::scale
