#include <clocale>
#include <csignal>

#include "table/table.h"

int main(int argc, char** argv) {
  // A reader that goes away is told about like any other failed write.
  std::signal(SIGPIPE, SIG_IGN);
  // Characters of regular expressions are those of UTF-8 wherever the program runs.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  return colx::table::run(argc, argv);
}
