#include "scale/counting/different_patterns.h"

#include "corpus/datafile_format.h"
#include "scale/engine/filters.h"
#include "scale/shards/number_files.h"

namespace colx::scale {

DifferentPatterns::DifferentPatterns(const WorkFolder& folder, const Plan& plan)
    : _tags(longest_text), _counts(NGram::_types_count, 0) {
  load_tags(folder, _tags);
  add_morphologic_rules(plan, _rules);
  _filter = std::make_unique<MorphologicFilter>(_rules, _tags);
}

void DifferentPatterns::save(Manifest& manifest) const {
  for (const std::uint64_t count : _counts)
    manifest.add("different", count);
}

}  // namespace colx::scale
