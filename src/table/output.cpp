#include "table/output.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "table/errors.h"

namespace colx::table {

void StandardOutput::_deliver(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
    if (written >= 0)
      text.remove_prefix(static_cast<std::size_t>(written));
    else if (errno != EINTR)
      throw OutputError("cannot write to standard output: " + std::generic_category().message(errno));
  }
}

}  // namespace colx::table
