#include <clocale>

#include "table/table.h"

int main(int argc, char** argv) {
  // Characters of regular expressions are those of UTF-8 wherever the program runs.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  return colx::run_companion(colx::table::program, argc, argv, colx::table::run);
}
