#include <csignal>
#include <string>
#include <vector>

#include "import/importer.h"

int main(int argc, char** argv) {
  // A reader that goes away shows as an error of writing, which is told.
  std::signal(SIGPIPE, SIG_IGN);
  return colx::run_import(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
}
