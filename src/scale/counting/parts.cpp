#include "scale/counting/parts.h"

#include <cstdint>

#include "scale/counting/arrange_task.h"

namespace colx::scale {

std::vector<Part> parts_of(const WorkFolder& folder, const Plan& plan, const Layout& layout) {
  std::vector<std::uint64_t> sizes(layout.ranges, 0);
  for (std::size_t task = 0; task < plan.reduces; ++task) {
    const ArrangeResult result = ArrangeResult::from(folder.result(arrange_name(task)));
    for (std::size_t range = 0; range < layout.ranges; ++range)
      sizes[range] += result.records[range];
  }
  std::vector<Part> parts{{0, 0}};
  std::uint64_t held = 0;
  for (std::size_t range = 0; range < layout.ranges; ++range) {
    if (held > 0 && held + sizes[range] > layout.most_records) {
      parts.push_back({range, range});
      held = 0;
    }
    parts.back().end_range = range + 1;
    held += sizes[range];
  }
  return parts;
}

}  // namespace colx::scale
