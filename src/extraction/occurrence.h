#pragma once

// Storing one occurrence of an N-gram: under each of its types, with its contexts, past the morphological filter.

#include <cstdint>
#include <span>

#include "corpus/buffer.h"
#include "corpus/datafile_stats.h"
#include "model/member_list.h"
#include "model/ngram.h"

namespace colx {

// Turns the positions of a piece, ascending and counted from 1, into the members of an occurrence; `members` comes and
// leaves without anything else. Returns the word whose parent is none of them, the top of the piece.
WordIterator _extract_ngram(WordIterator sentence_start, std::span<const std::uint32_t> positions, MemberList& members);

// Counts an occurrence under the types 0 to full and, when contexts are collected, the words around it. Adds to the
// counts of extracted and passed or filtered N-grams by what the filter says of the full type.
void _store_raw_ngram(const MemberList& members, const Buffer& buffer, NamedDataFileStats& stats, WordIterator root);

// Counts an occurrence under one type. Returns its record, or null when the morphological filter refuses it.
NGram* _store_ngram(const MemberList& members, std::uint8_t type);

// Counts the words of a range as wide contexts of a record, but for the words of its own significant members and those
// that the context filter refuses.
void _store_wide_context(NGram& record, const MemberList& members, WordRange range);

}  // namespace colx
