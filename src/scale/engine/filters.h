#pragma once

// The morphological rules as a task gets them: from the plan, as they stood in the rule files when it was made.

#include "filter/filter.h"
#include "scale/engine/plan.h"

namespace colx::scale {

// Adds the rules for N-grams.
inline void add_morphologic_rules(const Plan& plan, MultiRulesFilter& filter) {
  for (const MultiRulesFilter::Rule& rule : plan.morphologic_rules)
    filter.add_rule(rule);
}

// Adds the rules for context words.
inline void add_context_rules(const Plan& plan, UniRulesFilter& filter) {
  for (const std::string& rule : plan.context_rules)
    filter.add_rule(rule);
}

}  // namespace colx::scale
