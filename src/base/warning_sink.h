#pragma once

// Where a part that may have something to warn of says it.

#include <functional>
#include <string_view>

namespace colx {

// Takes one warning, a sentence or more without a line end; valid during the call. Must not be empty.
using WarningSink = std::function<void(std::string_view)>;

}  // namespace colx
