#pragma once

// Names for files that are not complete yet.

#include <string>

namespace colx {

// A name beside a path that no other process uses, on this machine or on another that sees the folder.
std::string temporary_name(const std::string& path);

}  // namespace colx
