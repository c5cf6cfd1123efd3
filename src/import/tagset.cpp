#include "import/tagset.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

namespace colx {

namespace {

struct Letter {
  std::string_view value;
  char letter;
};

struct TagPosition {
  std::string_view feature;
  std::span<const Letter> letters;
  // Names of the same feature in older treebanks, of three letters; a value of one character is its own letter there.
  std::array<std::string_view, 2> aliases;
  // The name in the first version of the universal features.
  std::string_view former = {};
};

constexpr Letter word_classes[] = {{"ADJ", 'A'},  {"ADP", 'R'},   {"ADV", 'D'},   {"AUX", 'X'},   {"CCONJ", 'J'},
                                   {"DET", 'T'},  {"INTJ", 'I'},  {"NOUN", 'N'},  {"NUM", 'C'},   {"PART", 'Q'},
                                   {"PRON", 'P'}, {"PROPN", 'E'}, {"PUNCT", 'Z'}, {"SCONJ", 'S'}, {"SYM", 'Y'},
                                   {"VERB", 'V'}, {"X", 'U'}};

constexpr Letter cases[] = {
    {"Nom", 'N'}, {"Gen", 'G'}, {"Dat", 'D'}, {"Acc", 'A'}, {"Voc", 'V'}, {"Loc", 'L'}, {"Ins", 'I'}, {"Abl", 'B'},
    {"Abs", 'S'}, {"Erg", 'E'}, {"Par", 'P'}, {"Ine", 'n'}, {"Ela", 'e'}, {"Ill", 'i'}, {"Ade", 'a'}, {"All", 'l'},
    {"Add", 'd'}, {"Abe", 'b'}, {"Ess", 's'}, {"Tra", 't'}, {"Com", 'c'}, {"Cau", 'C'}, {"Ben", 'F'}, {"Cmp", 'm'},
    {"Cns", 'k'}, {"Dis", 'x'}, {"Equ", 'q'}, {"Lat", 'T'}, {"Per", 'r'}, {"Sub", 'u'}, {"Sup", 'p'}, {"Tem", 'y'},
    {"Ter", 'o'}, {"Del", 'f'}, {"Obl", 'O'}, {"Sbl", 'U'}, {"Spl", 'Z'}, {"Sbe", 'W'}};
constexpr Letter numbers[] = {{"Sing", 'S'}, {"Plur", 'P'}, {"Dual", 'D'}, {"Tri", 'T'},   {"Pauc", 'U'}, {"Grpa", 'G'},
                              {"Grpl", 'L'}, {"Inv", 'I'},  {"Coll", 'C'}, {"Count", 'N'}, {"Ptan", 'A'}};
constexpr Letter genders[] = {{"Masc", 'M'}, {"Fem", 'F'}, {"Neut", 'N'}, {"Com", 'C'}};
constexpr Letter persons[] = {{"0", '0'}, {"1", '1'}, {"2", '2'}, {"3", '3'}, {"4", '4'}};
constexpr Letter tenses[] = {{"Past", 'R'}, {"Pres", 'P'}, {"Fut", 'F'},  {"Imp", 'I'},
                             {"Pqp", 'Q'},  {"Aor", 'A'},  {"Perf", 'T'}, {"Nonpast", 'N'}};
constexpr Letter moods[] = {{"Ind", 'I'}, {"Imp", 'M'}, {"Cnd", 'C'}, {"Sub", 'S'}, {"Opt", 'O'},
                            {"Jus", 'J'}, {"Prp", 'P'}, {"Qot", 'Q'}, {"Des", 'D'}, {"Nec", 'N'},
                            {"Pot", 'T'}, {"Adm", 'A'}, {"Int", 'E'}, {"Irr", 'R'}, {"Gen", 'G'}};
constexpr Letter verb_forms[] = {{"Fin", 'F'}, {"Inf", 'I'}, {"Part", 'P'}, {"Conv", 'C'},
                                 {"Gdv", 'G'}, {"Ger", 'E'}, {"Sup", 'S'},  {"Vnoun", 'N'}};
constexpr Letter voices[] = {{"Act", 'A'}, {"Pass", 'P'}, {"Mid", 'M'}, {"Antip", 'N'}, {"Cau", 'C'},
                             {"Dir", 'D'}, {"Inv", 'I'},  {"Rcp", 'R'}, {"Bfoc", 'B'},  {"Lfoc", 'L'}};
constexpr Letter degrees[] = {{"Pos", '1'}, {"Cmp", '2'}, {"Sup", '3'}, {"Abs", '4'},
                              {"Equ", '5'}, {"Dim", '6'}, {"Aug", '7'}};
constexpr Letter pronoun_types[] = {{"Prs", 'P'}, {"Rcp", 'C'}, {"Art", 'A'}, {"Int", 'Q'}, {"Rel", 'R'}, {"Exc", 'E'},
                                    {"Dem", 'D'}, {"Emp", 'M'}, {"Tot", 'T'}, {"Neg", 'N'}, {"Ind", 'I'}};
constexpr Letter polarities[] = {{"Pos", 'A'}, {"Neg", 'N'}};

constexpr TagPosition positions[] = {
    {"word class", word_classes, {}},     {"Case", cases, {"cas", "Cas"}},
    {"Number", numbers, {"Num", "num"}},  {"Gender", genders, {"Gen", "gen"}},
    {"Person", persons, {"Per", "per"}},  {"Tense", tenses, {"Ten", "tem"}},
    {"Mood", moods, {"mod", "Mod"}},      {"VerbForm", verb_forms, {"Vfo"}},
    {"Voice", voices, {"Voi", "voi"}},    {"Degree", degrees, {"Gra", "grn"}},
    {"PronType", pronoun_types, {"Pro"}}, {"Polarity", polarities, {"Neg", "neg"}, "Negative"},
};
static_assert(std::size(positions) == feature_positions);

char _letter(std::span<const Letter> letters, std::string_view value, bool own_letters) {
  const auto found = std::find_if(letters.begin(), letters.end(), [&](const Letter& l) { return l.value == value; });
  if (found != letters.end()) return found->letter;
  return own_letters && value.size() == 1 && value[0] > ' ' && value[0] < '\x7F' ? value[0] : '?';
}

char _class_letter(std::string_view upos) {
  if (upos.empty() || upos == "_") return '-';
  if (upos == "CONJ") return 'J';
  if (upos == "Punc") return 'Z';
  return _letter(word_classes, upos, true);
}

// Takes one feature apart: Name=Value, or three small letters and a value of one character.
void _split_feature(std::string_view feature, std::string_view& name, std::string_view& value) {
  const std::size_t equals = feature.find('=');
  name = feature.substr(0, equals);
  value = equals == std::string_view::npos ? "" : feature.substr(equals + 1);
  if (equals == std::string_view::npos && feature.size() == 4 && feature[0] >= 'a' && feature[0] <= 'z') {
    name = feature.substr(0, 3);
    value = feature.substr(3);
  }
  value = value.substr(0, value.find(','));
}

// Values that have no letter, by position.
using UnknownValues = std::array<std::string_view, feature_positions>;

// Makes the tag; where `unknown` is not null, values without a letter are noted there.
std::string _make_tag(std::string_view upos, std::string_view feats, UnknownValues* unknown) {
  std::string tag(feature_positions, '-');
  const auto set = [&](std::size_t p, char letter, std::string_view value) {
    tag[p] = letter;
    if (letter == '?' && unknown != nullptr) (*unknown)[p] = value;
  };
  set(0, _class_letter(upos), upos);
  while (!feats.empty()) {
    const std::size_t bar = feats.find('|');
    const std::string_view feature = feats.substr(0, bar);
    feats.remove_prefix(bar == std::string_view::npos ? feats.size() : bar + 1);
    std::string_view name;
    std::string_view value;
    _split_feature(feature, name, value);
    if (name.empty() || value.empty()) continue;
    for (std::size_t p = 1; p < feature_positions; ++p) {
      const TagPosition& position = positions[p];
      const bool alias = std::find(position.aliases.begin(), position.aliases.end(), name) != position.aliases.end();
      const bool is_named = alias || name == position.feature || name == position.former;
      if (is_named && tag[p] == '-') set(p, _letter(position.letters, value, alias), value);
    }
  }
  return tag;
}

}  // namespace

bool is_universal_class(std::string_view name) {
  return std::any_of(std::begin(word_classes), std::end(word_classes),
                     [&](const Letter& l) { return l.value == name; });
}

std::string positional_tag(std::string_view upos, std::string_view feats) {
  return _make_tag(upos, feats, nullptr);
}

std::vector<std::string> unknown_values(std::string_view upos, std::string_view feats) {
  UnknownValues values;
  _make_tag(upos, feats, &values);
  std::vector<std::string> named;
  for (std::size_t p = 0; p < feature_positions; ++p)
    if (!values[p].empty()) named.push_back(fmt::format("{}={}", p == 0 ? "UPOS" : positions[p].feature, values[p]));
  return named;
}

std::string_view position_name(std::size_t position) {
  return positions[position].feature;
}

std::string tag_table() {
  std::string table = "position\tname\tletter\tvalue\n";
  for (std::size_t p = 0; p < feature_positions; ++p) {
    for (const Letter& letter : positions[p].letters)
      table += fmt::format("{}\t{}\t{}\t{}\n", p + 1, positions[p].feature, letter.letter, letter.value);
    table += fmt::format("{0}\t{1}\t-\t(absent)\n{0}\t{1}\t?\t(any other)\n", p + 1, positions[p].feature);
  }
  return table;
}

}  // namespace colx
