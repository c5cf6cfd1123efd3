#pragma once

// One run of the program, from the command line to the last output file.

namespace colx {

// Does everything that the command line asks for and returns the exit status 0, which means that every requested file
// is complete. A failure of any kind is reported and ends the process with status 1, here and nowhere else.
int run(int argc, const char* const* argv);

}  // namespace colx
