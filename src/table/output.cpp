#include "table/output.h"

#include "companion/descriptor.h"

namespace colx::table {

void StandardOutput::_deliver(std::string_view text) {
  write_to_standard_output(text);
}

}  // namespace colx::table
