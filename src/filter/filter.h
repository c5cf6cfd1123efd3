#pragma once

// Morphological rule filters: which N-grams, and which words around them, are kept by their tags. Each filter counts,
// rule by rule, what it let through.
//
// A tag rule is a text of tag characters, '-' standing for any. A rule is one tag rule, or one for each position. Tags
// are compared as text, and only as far as the shorter of tag rule and tag goes.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace colx {

// What both filters share: counters by rule, for the run and for the datafile in hand.
class Filter {
 public:
  // What a filter has decided.
  struct Stats {
    std::vector<std::uint32_t> matched;  // by rule: items that it admitted first
    std::uint32_t unmatched = 0;         // items that no rule admitted

    // Sets all counters to 0.
    void reset();
  };

  virtual ~Filter() = default;

  // Tells whether there is any rule. A filter without rules is not to be asked; it lets everything through.
  virtual bool is_on() const = 0;

  Stats stats;       // of the whole run
  Stats file_stats;  // of the current datafile

 protected:
  // Makes a counter for one more rule.
  void _add_counters();

  // Counts an item that the given rule was the first to admit, or no rule when the number is that of the rules.
  void _count(std::size_t rule);
};

// Compares one tag rule with one tag; an empty tag rule or tag agrees with everything.
bool match_single_rule(const std::string& rule, const std::string& item);

// Admits single tags.
class UniRulesFilter : public Filter {
 public:
  bool is_on() const override { return !_rules.empty(); }

  void add_rule(std::string rule);

  // Adds each line of a file that is not empty as a rule. Returns false when the file cannot be opened; throws
  // fatal_error when it cannot be read to its end.
  bool read_rules(const char* path);

  // Tells whether some rule admits the tag, and counts it if asked to.
  bool match(const std::string& item, bool count);

  const std::vector<std::string>& rules() const { return _rules; }

 private:
  std::vector<std::string> _rules;
};

// Admits sequences of tags, position by position.
class MultiRulesFilter : public Filter {
 public:
  using Rule = std::vector<std::string>;

  bool is_on() const override { return !_rules.empty(); }

  void add_rule(Rule rule);

  // Adds each line of a file that holds `n` tag rules separated by single spaces; with an `n` of 0, each line that is
  // not empty. Returns false when the file cannot be opened; throws fatal_error when it cannot be read to its end.
  bool read_rules(const char* path, unsigned n);

  // Tells whether some rule of as many tag rules admits the tags, and counts them if asked to.
  bool match(const std::vector<std::string>& items, bool count);

  // The first rule that admits the tags, or the number of rules when none does. Counts nothing.
  std::size_t first_match(const std::vector<std::string>& items) const;

  // Takes the outcome of first_match: tells whether a rule admits, and counts it if asked to.
  bool decide(std::size_t first_match, bool count);

  const std::vector<Rule>& rules() const { return _rules; }

 private:
  std::vector<Rule> _rules;
};

}  // namespace colx
