#pragma once

// The member lines of an N-gram, as the output datafile and the contexts file write them: position, lemma, tag,
// position of the parent and relation, separated by TABs.

#include <cstdint>

#include "corpus/word_texts.h"
#include "model/ngram.h"
#include "output/text_buffer.h"

namespace colx {

// Writes the line of one member.
void _print_member(TextBuffer& out, const WordTexts& texts, std::uint32_t position, NGram::Member m);

// Writes a line for each of the N positions, that of an open one being its number and "*".
void _print_n_members(TextBuffer& out, const WordTexts& texts, const NGram& g);

// Writes a line for each stored member, numbered from 1.
void _print_members(TextBuffer& out, const WordTexts& texts, const NGram& g);

}  // namespace colx
