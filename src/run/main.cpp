#include <csignal>

#include "run/driver.h"

int main(int argc, char** argv) {
  // A reader of standard output that goes away must not end a run whose files are still to be written.
  std::signal(SIGPIPE, SIG_IGN);
  return colx::run(argc, argv);
}
