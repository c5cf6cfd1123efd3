#include "filter/filter.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/config.h"
#include "base/files.h"

namespace colx {

namespace {

// Splits at every single space; only a last member that is empty is none.
MultiRulesFilter::Rule _split(const std::string& line) {
  MultiRulesFilter::Rule members;
  std::size_t begin = 0;
  for (std::size_t end; (end = line.find(' ', begin)) != std::string::npos; begin = end + 1) {
    members.push_back(line.substr(begin, end - begin));
  }
  if (begin < line.size()) members.push_back(line.substr(begin));
  return members;
}

}  // namespace

void Filter::Stats::reset() {
  std::fill(matched.begin(), matched.end(), 0);
  unmatched = 0;
}

void Filter::_add_counters() {
  stats.matched.push_back(0);
  file_stats.matched.push_back(0);
}

void Filter::_count(std::size_t rule) {
  for (Stats* counters : {&stats, &file_stats}) {
    ++(rule < counters->matched.size() ? counters->matched[rule] : counters->unmatched);
  }
}

bool match_single_rule(const std::string& rule, const std::string& item) {
  const std::size_t common = std::min(rule.size(), item.size());
  for (std::size_t p = 0; p < common; ++p) {
    if (rule[p] != constants::insignificant_position_mark && rule[p] != item[p]) return false;
  }
  return true;
}

void UniRulesFilter::add_rule(std::string rule) {
  _rules.push_back(std::move(rule));
  _add_counters();
}

bool UniRulesFilter::read_rules(const char* path) {
  return read_lines(path, [&](const std::string& line) {
    if (!line.empty()) add_rule(line);
  });
}

bool UniRulesFilter::match(const std::string& item, bool count) {
  const auto winner = std::find_if(_rules.begin(), _rules.end(),
                                   [&](const std::string& rule) { return match_single_rule(rule, item); });
  if (count) _count(static_cast<std::size_t>(winner - _rules.begin()));
  return winner != _rules.end();
}

void MultiRulesFilter::add_rule(Rule rule) {
  _rules.push_back(std::move(rule));
  _add_counters();
}

bool MultiRulesFilter::read_rules(const char* path, unsigned n) {
  return read_lines(path, [&](const std::string& line) {
    if (line.empty()) return;
    Rule rule = _split(line);
    if (n == 0 || rule.size() == n) add_rule(std::move(rule));
  });
}

bool MultiRulesFilter::match(const std::vector<std::string>& items, bool count) {
  return decide(first_match(items), count);
}

std::size_t MultiRulesFilter::first_match(const std::vector<std::string>& items) const {
  const auto admits = [&](const Rule& rule) {
    return std::equal(rule.begin(), rule.end(), items.begin(), items.end(), match_single_rule);
  };
  return static_cast<std::size_t>(std::find_if(_rules.begin(), _rules.end(), admits) - _rules.begin());
}

bool MultiRulesFilter::decide(std::size_t first_match, bool count) {
  if (count) _count(first_match);
  return first_match < _rules.size();
}

}  // namespace colx
