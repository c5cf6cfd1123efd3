#pragma once

// One run of the program, from the command line to the last output file.

namespace colx {

// Does everything that the command line asks for and returns the exit status 0; a failure is reported and ends the
// process with status 1. Status 0 means that every requested file is complete.
int run(int argc, const char* const* argv);

}  // namespace colx
