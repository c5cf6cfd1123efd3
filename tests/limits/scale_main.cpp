#include "companion/command_line.h"
#include "scale/options.h"
#include "scale/scale.h"
#include "tests/limits/lowered_limits.h"

int main(int argc, char** argv) {
  colx::test::lower_limits();
  return colx::run_companion(colx::scale::program, argc, argv, colx::scale::scale);
}
