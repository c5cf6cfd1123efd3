#include "companion/command_line.h"
#include "scale/options.h"
#include "scale/scale.h"

int main(int argc, char** argv) {
  return colx::run_companion(colx::scale::program, argc, argv, colx::scale::scale);
}
