#pragma once

// The long-lived objects of the program, made anew for a test that needs them.

#include <memory>
#include <utility>

#include "base/config.h"
#include "corpus/persistent.h"

namespace colx::test {

// Empties all persistent objects when it is made and again when it goes out of scope, the N-gram store being
// initialised in between. To be made after the guard that sets N up; addresses of records and texts die with it.
class FreshStores {
 public:
  FreshStores() {
    _renew_all();
    persistent::ngrams.init(constants::ngram_within_block);
  }
  ~FreshStores() { _renew_all(); }

  FreshStores(const FreshStores&) = delete;
  FreshStores& operator=(const FreshStores&) = delete;

 private:
  // Destroys an object and builds it again in its place.
  template <typename Object, typename... Arguments>
  static void _renew(Object& object, Arguments... arguments) {
    std::destroy_at(&object);
    std::construct_at(&object, arguments...);
  }

  static void _renew_all() {
    _renew(persistent::lemmas, 65535U);
    _renew(persistent::tags, 65535U);
    _renew(persistent::ngrams, 0U);
    _renew(persistent::morphologic_filter);
    _renew(persistent::context_filter);
    _renew(persistent::overall_stats);
    _renew(persistent::morphologic_filter_file_stats);
  }
};

}  // namespace colx::test
