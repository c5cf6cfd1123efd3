#include "import/relation_map.h"

#include <optional>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"
#include "import/function_names.h"
#include "import/sentence.h"

namespace colx {

namespace {

bool _is_function(std::string_view name) {
  return name != "Head" && is_analytical_function(name);
}

std::optional<RelationRule> _rule(std::string_view text) {
  using Source = RelationRule::Source;
  constexpr std::string_view phrase = "parent=";
  if (text == "punctuation") return RelationRule{Source::punctuation, ""};
  if (text == "parent") return RelationRule{Source::parent, ""};
  if (text == "parent_Ap" || text == "parent_Co" || text == "parent_Pa")
    return RelationRule{Source::parent, std::string(text.substr(text.find('_')))};
  if (text.starts_with(phrase)) {
    text.remove_prefix(phrase.size());
    if (_is_function(text)) return RelationRule{Source::phrase, std::string(text)};
    return std::nullopt;
  }
  if (_is_function(text)) return RelationRule{Source::itself, std::string(text)};
  return std::nullopt;
}

}  // namespace

RelationMap::RelationMap(std::string_view text, std::string_view name) : _name(name) {
  for (std::uint64_t number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (number == 1 && line.starts_with(byte_order_mark)) line.remove_prefix(byte_order_mark.size());
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!line.empty() && !line.starts_with('#')) _add_line(line, number);
  }
}

void RelationMap::_add_line(std::string_view line, std::uint64_t number) {
  const auto fail = [&](const std::string& expected) {
    throw input_error(fmt::format("{}:{}: expected {}", _name, number, expected));
  };
  const std::size_t tab = line.find('\t');
  if (tab == std::string_view::npos || tab == 0 || line.find('\t', tab + 1) != std::string_view::npos)
    fail(fmt::format("a relation and a function, separated by one TAB, found {}", in_quotes(line)));
  const std::string_view relation = line.substr(0, tab);
  auto rule = _rule(line.substr(tab + 1));
  if (!rule)
    fail(
        fmt::format("an analytical function, parent, parent_Ap, parent_Co, parent_Pa, parent=FUNCTION or punctuation, "
                    "found {}",
                    in_quotes(line.substr(tab + 1))));
  if (!_rules.try_emplace(std::string(relation), std::move(*rule)).second)
    fail(fmt::format("every relation once, found {} again", in_quotes(relation)));
  _has_classes = _has_classes || relation.find('>') != std::string_view::npos;
}

const RelationRule* RelationMap::_find(std::string_view relation) const {
  for (;;) {
    if (const auto found = _rules.find(relation); found != _rules.end()) return &found->second;
    const std::size_t part = relation.find_last_of(":@");
    if (part == std::string_view::npos) return nullptr;
    relation = relation.substr(0, part);
  }
}

const RelationRule* RelationMap::find(std::string_view relation, std::string_view parent_class) const {
  if (_has_classes && !parent_class.empty()) {
    std::string below(parent_class);
    below.append(">").append(relation);
    if (const RelationRule* const rule = _find(below)) return rule;
  }
  return _find(relation);
}

}  // namespace colx
