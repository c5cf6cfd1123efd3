#include "base/notifier.h"

#include <cstdlib>
#include <iostream>

#include "base/boost_progress.h"

namespace colx {

const boost::progress_timer ProgressNotifier::_timer(std::cout);

void Notifier::fatal_error(std::string_view message) const {
  _stream << "FATAL ERROR: " << message << std::endl;
}

void Notifier::warning(std::string_view message) const {
  _stream << "WARNING: " << message << std::endl;
}

void Notifier::info(std::string_view message) const {
  _stream << message << std::endl;
}

void ProgressNotifier::elapsed(std::string_view message) const {
  stream() << message << '\n' << _timer.elapsed() << " secs elapsed." << std::endl;
}

namespace notifier {
const Notifier error(std::cerr);
const ProgressNotifier progress(std::cout);
}  // namespace notifier

void exit_failure() {
  notifier::progress.info("\nProgram terminated due to fatal error(s). See stderr output for more info.");
  std::exit(EXIT_FAILURE);
}

}  // namespace colx
