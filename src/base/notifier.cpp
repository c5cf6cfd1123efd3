#include "base/notifier.h"

#include <ostream>

namespace colx {

void Notifier::fatal_error(std::string_view message) const {
  _stream << "FATAL ERROR: " << message << std::endl;
}

void Notifier::warning(std::string_view message) const {
  _stream << "WARNING: " << message << std::endl;
}

void Notifier::info(std::string_view message) const {
  _stream << message << std::endl;
}

}  // namespace colx
