#include "rows/collation.h"

#include <locale.h>
#include <string.h>

#include <cstddef>
#include <utility>

#include "companion/errors.h"

namespace colx::table {

struct Collation::Locale {
  explicit Locale(locale_t from) : handle(from) {}
  ~Locale() { ::freelocale(handle); }

  Locale(const Locale&) = delete;
  Locale& operator=(const Locale&) = delete;

  locale_t handle;
};

Collation::Collation(std::shared_ptr<const Locale> locale) : _locale(std::move(locale)) {}

Collation Collation::of_environment() {
  // The characters must be those of the same locale.
  const auto handle = ::newlocale(LC_COLLATE_MASK | LC_CTYPE_MASK, "", nullptr);
  if (handle == nullptr)
    throw usage_error("the system does not have the locale that LC_ALL, LC_COLLATE or LANG names; see \"locale -a\"");
  return Collation(std::make_shared<const Locale>(handle));
}

void Collation::append_key(const std::string& text, std::string& key) const {
  const std::size_t begin = key.size();
  const std::size_t size = ::strxfrm_l(nullptr, text.c_str(), 0, _locale->handle);
  key.resize(begin + size + 1);
  ::strxfrm_l(key.data() + begin, text.c_str(), size + 1, _locale->handle);
  key.pop_back();
}

}  // namespace colx::table
