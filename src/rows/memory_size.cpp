#include "rows/memory_size.h"

#include "companion/memory_size.h"

namespace colx::table {

std::size_t usual_memory_of_sorts() {
  return memory_of_machine() / 4;
}

}  // namespace colx::table
