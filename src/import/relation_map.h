#pragma once

// Tables from the relations of a treebank to analytical functions: their form as text, and what they say of a relation.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace colx {

// What a table says of a word by its relation.
struct RelationRule {
  enum class Source : std::uint8_t {
    itself,       // `text` is its function
    parent,       // that of its parent without suffix, and `text`, a suffix or nothing, behind it
    phrase,       // that of its parent as it is, whose function becomes `text`, as the parent is only its function word
    punctuation,  // by its form and its place in the sentence
  };
  Source source = Source::itself;
  std::string text;
};

// A table of relations. As a text it has a relation and what it becomes on each line, separated by one TAB; lines that
// begin with '#' and empty ones are passed over. What it becomes is
//
//   a function           such as Atr, with or without suffix
//   parent               the function of the parent, without its suffix; parent_Ap, parent_Co, parent_Pa: with that one
//   parent=FUNCTION      the function of the parent, whose own becomes FUNCTION
//   punctuation          AuxX, AuxK or AuxG
//
// A relation may stand behind a word class and '>', as in NOUN>mod: that line holds below parents of that class and
// comes before those without a class.
class RelationMap {
 public:
  // Reads a text. Throws input_error, with `name` and the line, for a line of another form, an unknown function and a
  // relation that has a line already.
  RelationMap(std::string_view text, std::string_view name);

  // What the name for messages is.
  const std::string& name() const { return _name; }

  // Whether the class of the parent can make a difference.
  bool has_classes() const { return _has_classes; }

  // The line of a relation, below a parent of that word class (empty: below none); else that of the relation without
  // its last part, which begins with ':' or '@', and so on. Nothing when there is none. Valid as long as the map.
  const RelationRule* find(std::string_view relation, std::string_view parent_class) const;

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  const RelationRule* _find(std::string_view relation) const;
  void _add_line(std::string_view line, std::uint64_t number);

  std::string _name;
  std::unordered_map<std::string, RelationRule, Hash, std::equal_to<>> _rules;
  bool _has_classes = false;
};

}  // namespace colx
