#include "scale/writing/counted.h"

#include "scale/counting/parts.h"
#include "scale/counting/reduce_task.h"

namespace colx::scale {

Counted::Counted(const WorkFolder& work_folder, const Plan& whole_plan)
    : folder(work_folder),
      plan(whole_plan),
      numbering(Numbering::from(folder.result(number_name))),
      layout(Layout::from(folder, plan)),
      parts(parts_of(folder, plan, layout).size()) {
  for (const NumberedShard& shard : numbering.shards)
    used.push_back(shard.used);
  occurrences = Occurrences::from(folder, used).all;
}

std::uint64_t Counted::words() const {
  std::uint64_t sum = 0;
  for (const NumberedDatafile& datafile : numbering.datafiles)
    sum += datafile.words;
  return sum;
}

}  // namespace colx::scale
