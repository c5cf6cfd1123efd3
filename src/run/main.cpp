#include <csignal>
#include <cstdlib>
#include <iostream>

#include "base/standard_descriptors.h"
#include "run/driver.h"

int main(int argc, char** argv) {
  if (!colx::occupy_standard_descriptors()) {
    std::cerr << "FATAL ERROR: A standard stream is closed and cannot be opened on /dev/null!" << std::endl;
    return EXIT_FAILURE;
  }
  // A reader of standard output that goes away must not end a run whose files are still to be written.
  std::signal(SIGPIPE, SIG_IGN);
  return colx::run(argc, argv);
}
