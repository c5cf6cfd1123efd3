#pragma once

// The pair of channels that a room below the programs speaks on. No room has channels of its own: it is given them.

#include "base/notifier.h"

namespace colx {

// Neither is owned; both must outlive what they are given to.
struct Channels {
  const Notifier& error;     // warnings
  const Notifier& progress;  // bars, and lines between them
};

}  // namespace colx
