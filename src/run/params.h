#pragma once

// The command line: one table of options from which both the scanner and the usage text are made.

namespace colx {

// Fills the settings from the words of the command line; never fails and prints nothing. Words that are no option are
// passed over, a later option overrides an earlier one, and a value that is missing at the end of the line unsets a
// text and leaves a number as it was. The words must outlive the settings.
void parse_params(int argc, const char* const* argv);

// Converts an unsigned option value: decimal, by the rules of strtol, a negative one becoming 0.
unsigned long _ascii2size_t(const char* text);

// Writes the option summary to standard output, an empty line at its end, and flushes.
void print_usage();

}  // namespace colx
