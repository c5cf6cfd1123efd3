#include "companion/command_line.h"
#include "table/options.h"
#include "table/table.h"

int main(int argc, char** argv) {
  return colx::run_companion(colx::table::program, argc, argv, colx::table::run);
}
