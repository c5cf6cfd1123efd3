#include "run/driver.h"
#include "tests/limits/lowered_limits.h"

int main(int argc, char** argv) {
  colx::test::lower_limits();
  return colx::run(argc, argv);
}
