#include "companion/command_line.h"
#include "examples/examples.h"
#include "examples/options.h"

int main(int argc, char** argv) {
  return colx::run_companion(colx::examples::program, argc, argv, colx::examples::run);
}
