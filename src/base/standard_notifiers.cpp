#include <cstdlib>
#include <iostream>

#include "base/boost_progress.h"
#include "base/notifier.h"

namespace colx {

const boost::progress_timer ProgressNotifier::_timer(std::cout);

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
