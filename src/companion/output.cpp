#include "companion/output.h"

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"

namespace colx {

void StandardOutput::_deliver(std::string_view text) {
  write_to_standard_output(text);
}

void check_output_path(const std::string& output, const std::vector<std::string>& inputs) {
  const auto before = regular_file(output);
  if (!before.has_value()) return;
  for (const std::string& path : inputs) {
    const auto input = path.empty() ? std::nullopt : regular_input(path);
    if (input.has_value() && before->identity == input->identity)
      throw usage_error(fmt::format("output {} is also an input", output));
  }
}

}  // namespace colx
