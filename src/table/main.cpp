#include <clocale>
#include <cstdio>

#include "companion/command_line.h"
#include "table/options.h"
#include "table/table.h"

int main(int argc, char** argv) {
  // Characters of regular expressions are those of UTF-8 wherever the program runs.
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr)
    std::fputs("ngrex-table: the system has no locale C.UTF-8; regular expressions see bytes\n", stderr);
  return colx::run_companion(colx::table::program, argc, argv, colx::table::run);
}
