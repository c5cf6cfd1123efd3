#include "companion/command_line.h"
#include "import/import_options.h"
#include "import/importer.h"

int main(int argc, char** argv) {
  return colx::run_companion(colx::import_program, argc, argv, colx::run_import);
}
