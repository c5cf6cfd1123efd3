#include "import/relation_tables.h"

#include <cstddef>
#include <cstdint>

#include "import/treebank_format.h"

namespace colx {

namespace {

constexpr RelationTable universal = {
    .name = "ud",
    .scheme = "Universal Dependencies",
    .text =
        "# Relations of Universal Dependencies and the analytical functions that they become.\n"
        "acl\tAtr\n"
        "advcl\tAdv\n"
        "advcl:pred\tAtvV\n"
        "advmod\tAdv\n"
        "advmod:emph\tAuxZ\n"
        "amod\tAtr\n"
        "aux\tAuxV\n"
        "case\tAuxP\n"
        "cc\tCoord\n"
        "cc:preconj\tAuxY\n"
        "ccomp\tObj\n"
        "clf\tAtr\n"
        "compound\tAtr\n"
        "compound:lvc\tObj\n"
        "compound:prt\tAuxT\n"
        "cop\tAuxV\n"
        "csubj\tSb\n"
        "det\tAtr\n"
        "discourse\tAuxY\n"
        "dislocated\tExD\n"
        "expl\tAuxO\n"
        "expl:impers\tAuxR\n"
        "expl:pass\tAuxR\n"
        "expl:pv\tAuxT\n"
        "flat\tAtr\n"
        "iobj\tObj\n"
        "list\tExD\n"
        "mark\tAuxC\n"
        "nmod\tAtr\n"
        "nsubj\tSb\n"
        "nummod\tAtr\n"
        "obj\tObj\n"
        "obl\tAdv\n"
        "obl:agent\tObj\n"
        "obl:arg\tObj\n"
        "orphan\tExD\n"
        "parataxis\tPred_Pa\n"
        "reparandum\tExD\n"
        "root\tPred\n"
        "vocative\tExD\n"
        "xcomp\tObj\n"
        "punct\tpunctuation\n"
        "appos\tparent_Ap\n"
        "conj\tparent_Co\n"
        "fixed\tparent\n"
        "goeswith\tparent\n"
        "mwe\tparent\n"
        "# Of the first version, renamed in the second.\n"
        "auxpass\tAuxV\n"
        "csubjpass\tSb\n"
        "dobj\tObj\n"
        "foreign\tAtr\n"
        "name\tAtr\n"
        "neg\tAdv\n"
        "nsubjpass\tSb\n"
        "remnant\tExD\n"};

constexpr RelationTable surface = {
    .name = "sud",
    .scheme = "Surface-Syntactic Universal Dependencies",
    .text =
        "# Relations of Surface-Syntactic Universal Dependencies and the analytical functions that they become.\n"
        "cc\tCoord\n"
        "cc:preconj\tAuxY\n"
        "clf\tAtr\n"
        "comp\tObj\n"
        "comp:aux\tparent=AuxV\n"
        "comp:cleft\tAdv\n"
        "comp:obj\tObj\n"
        "comp:obj@expl\tAuxO\n"
        "comp:obl\tObj\n"
        "comp:pred\tPnom\n"
        "comp@expl\tAuxO\n"
        "comp@pass\tAuxR\n"
        "compound\tAtr\n"
        "compound:lvc\tObj\n"
        "compound:prt\tAuxT\n"
        "det\tAtr\n"
        "discourse\tAuxY\n"
        "dislocated\tExD\n"
        "flat\tAtr\n"
        "list\tExD\n"
        "mod\tAdv\n"
        "mod@emph\tAuxZ\n"
        "mod@relcl\tAtr\n"
        "orphan\tExD\n"
        "parataxis\tPred_Pa\n"
        "reparandum\tExD\n"
        "root\tPred\n"
        "subj\tSb\n"
        "subj@expl\tAuxO\n"
        "udep\tAdv\n"
        "unk@expl\tAuxO\n"
        "unk@fixed\tparent\n"
        "vocative\tExD\n"
        "punct\tpunctuation\n"
        "appos\tparent_Ap\n"
        "conj\tparent_Co\n"
        "conj:appos\tparent_Ap\n"
        "fixed\tparent\n"
        "goeswith\tparent\n"
        "# Below function words, which are the heads of their phrases.\n"
        "ADP>comp\tparent=AuxP\n"
        "PART>comp\tparent=AuxC\n"
        "SCONJ>comp\tparent=AuxC\n"
        "# Below nominals.\n"
        "NOUN>mod\tAtr\n"
        "PROPN>mod\tAtr\n"
        "PRON>mod\tAtr\n"
        "DET>mod\tAtr\n"
        "NUM>mod\tAtr\n"
        "SYM>mod\tAtr\n"
        "X>mod\tAtr\n"
        "NOUN>udep\tAtr\n"
        "PROPN>udep\tAtr\n"
        "PRON>udep\tAtr\n"
        "DET>udep\tAtr\n"
        "NUM>udep\tAtr\n"
        "SYM>udep\tAtr\n"
        "X>udep\tAtr\n"
        "NOUN>mod@emph\tAuxZ\n"
        "PROPN>mod@emph\tAuxZ\n"
        "PRON>mod@emph\tAuxZ\n"
        "DET>mod@emph\tAuxZ\n"
        "NUM>mod@emph\tAuxZ\n"
        "SYM>mod@emph\tAuxZ\n"
        "X>mod@emph\tAuxZ\n"};

}  // namespace

const RelationMap& map_of(const RelationTable& table) {
  static const RelationMap maps[] = {{universal.text, universal.name}, {surface.text, surface.name}};
  return maps[table.name == surface.name ? 1 : 0];
}

const RelationTable& universal_relations() {
  return universal;
}

const RelationTable& surface_relations() {
  return surface;
}

const RelationTable* relation_table(std::string_view name) {
  for (const RelationTable* const table : {&universal, &surface})
    if (table->name == name) return table;
  return nullptr;
}

const RelationTable& recognise_relations(std::string_view beginning) {
  std::uint64_t only_universal = 0;
  std::uint64_t only_surface = 0;
  std::string_view columns[10];
  while (!beginning.empty()) {
    const std::size_t end = beginning.find('\n');
    const std::string_view line = beginning.substr(0, end);
    beginning.remove_prefix(end == std::string_view::npos ? beginning.size() : end + 1);
    if (line.starts_with('#') || split_columns(line, columns) != 10) continue;
    const bool is_universal = map_of(universal).find(columns[7], "") != nullptr;
    const bool is_surface = map_of(surface).find(columns[7], "") != nullptr;
    if (is_universal && !is_surface) ++only_universal;
    if (is_surface && !is_universal) ++only_surface;
  }
  return only_surface > only_universal ? surface : universal;
}

}  // namespace colx
