#pragma once

// The order of texts in the language of the user.

#include <memory>
#include <string>

namespace colx::table {

// A collation order of the system. Copies share it.
class Collation {
 public:
  // That of the environment: LC_ALL, LC_COLLATE or LANG. Throws usage_error when the system has no such locale.
  static Collation of_environment();

  // Appends bytes, none of them zero, that are ordered as the texts from which they are made. A zero byte ends a text.
  void append_key(const std::string& text, std::string& key) const;

 private:
  struct Locale;

  explicit Collation(std::shared_ptr<const Locale> locale);

  std::shared_ptr<const Locale> _locale;
};

}  // namespace colx::table
