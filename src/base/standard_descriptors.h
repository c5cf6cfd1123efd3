#pragma once

// The three standard descriptors, which every program of the project takes to be open.

namespace colx {

// Opens those of the three that are closed on /dev/null, so that no file takes their place and gets what was meant for
// them. The wrong way round, so that using one stays an error. To be called before anything else is opened; returns
// false when one stays closed.
[[nodiscard]] bool occupy_standard_descriptors();

}  // namespace colx
