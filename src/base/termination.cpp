#include "base/termination.h"

#include <cstdlib>
#include <exception>
#include <new>

namespace colx {

namespace {

void (*_last_words)(const char* reason) = nullptr;

[[noreturn]] void _terminate() {
  // With no exception in hand there is nothing to be thrown again.
  if (std::current_exception() == nullptr) {
    _last_words(nullptr);
  } else {
    try {
      throw;
    } catch (const std::bad_alloc&) {
      _last_words(nullptr);
    } catch (const std::exception& error) {
      _last_words(error.what());
    } catch (...) {
    }
  }
  std::abort();
}

}  // namespace

void end_with_words(void (*last_words)(const char* reason)) {
  _last_words = last_words;
  std::set_terminate(_terminate);
}

}  // namespace colx
