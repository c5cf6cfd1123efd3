#include "companion/command_line.h"
#include "report/options.h"
#include "report/report.h"

int main(int argc, char** argv) {
  return colx::run_companion(colx::report::program, argc, argv, colx::report::run);
}
