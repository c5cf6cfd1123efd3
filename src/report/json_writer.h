#pragma once

// JSON that may stand in a script element of a page, whatever its texts are.

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace colx::report {

// A text with its quotes. Everything that could end the element or a line of a script is written by its number: "<",
// control characters, U+2028 and U+2029. Bytes that are no UTF-8 become U+FFFD.
std::string json_text(std::string_view text);

// Writes values one after another and puts the commas between them, with what is outermost on a line of its own.
// Every value in an object comes behind its key.
class JsonWriter {
 public:
  JsonWriter& key(std::string_view name);

  JsonWriter& value(std::string_view text) { return _put(json_text(text)); }
  JsonWriter& value(const char* text) { return value(std::string_view(text)); }
  JsonWriter& value(bool truth) { return _put(truth ? "true" : "false"); }
  template <std::unsigned_integral Count>
  requires(!std::same_as<Count, bool>) JsonWriter& value(Count count) { return _put(std::to_string(count)); }
  // Null when there is nothing.
  template <typename Value>
  JsonWriter& value(const std::optional<Value>& maybe) {
    return maybe.has_value() ? value(*maybe) : null();
  }
  JsonWriter& null() { return _put("null"); }

  JsonWriter& begin_object() { return _begin('{'); }
  JsonWriter& end_object() { return _end('}'); }
  JsonWriter& begin_array() { return _begin('['); }
  JsonWriter& end_array() { return _end(']'); }

  // All that has been written.
  const std::string& text() const { return _text; }

 private:
  JsonWriter& _put(std::string_view written);
  JsonWriter& _begin(char bracket);
  JsonWriter& _end(char bracket);
  void _separate();

  std::string _text;
  std::size_t _depth = 0;  // of brackets that are open
  bool _needs_comma = false;
};

}  // namespace colx::report
