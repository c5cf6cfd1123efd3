#pragma once

// The command line: one table of options from which the scanner, the usage text and other programs that count are made.

#include <ostream>

namespace colx {

// Takes the option that words[at] names, if it names any, with its value from the next word, into the settings. Returns
// how many of the words it took, 0 when there is no such option. A value that is missing at the end of the line unsets
// a text and leaves a number as it was. The words must outlive the settings.
int take_option(int count, const char* const* words, int at);

// Fills the settings from the words of the command line; never fails and prints nothing. Words that are no option are
// passed over, a later option overrides an earlier one, and a value that is missing at the end of the line unsets a
// text and leaves a number as it was. The words must outlive the settings.
void parse_params(int argc, const char* const* argv);

// Converts an unsigned option value: decimal, by the rules of strtol, a negative one becoming 0.
unsigned long _ascii2size_t(const char* text);

// Writes the options with what they are for, the mandatory ones and then the others, each group under its title.
void print_options(std::ostream& out);

// Writes the option summary of ngrex, an empty line at its end, and flushes.
void print_usage(std::ostream& out);

}  // namespace colx
