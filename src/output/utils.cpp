#include "output/utils.h"

#include <sstream>

namespace colx {

std::string double2str(double x, std::uint32_t precision) {
  std::ostringstream stream;
  stream.precision(precision);
  stream << x;
  return stream.str();
}

std::string unsigned2str(std::uint32_t u) {
  return std::to_string(u);
}

}  // namespace colx
