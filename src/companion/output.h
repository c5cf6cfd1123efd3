#pragma once

// Where the result of a program goes: text collected in a buffer and delivered in large pieces.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "companion/new_file.h"

namespace colx {

class Output {
 public:
  Output() { _pending.reserve(block + block / 2); }
  virtual ~Output() = default;

  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  Output& operator<<(char c) {
    _pending += c;
    return *this;
  }
  Output& operator<<(std::string_view text) {
    _pending += text;
    return *this;
  }

  // The file that takes the text, for formats that write it in their own way; null when it goes elsewhere.
  virtual const NewFile* file() const { return nullptr; }

  // Says that a row is complete: the buffer is delivered when it is full.
  void end_row() {
    if (_pending.size() >= block) flush();
  }

  void flush() {
    _deliver(_pending);
    _pending.clear();
  }

 private:
  static constexpr std::size_t block = std::size_t{64} << 10;

  virtual void _deliver(std::string_view text) = 0;

  std::string _pending;
};

// Standard output. Throws output_error when a text cannot be written, for instance because the disk is full,
// and reader_gone.
class StandardOutput : public Output {
 private:
  void _deliver(std::string_view text) override;
};

// A file that is there when it is complete. Throws output_error.
class FileOutput : public Output {
 public:
  // The file must outlive the output.
  explicit FileOutput(const NewFile& file) : _file(file) {}

  const NewFile* file() const override { return &_file; }

 private:
  void _deliver(std::string_view text) override { _file.write(text); }

  const NewFile& _file;
};

// A text in memory.
class TextOutput : public Output {
 public:
  // Everything up to now.
  const std::string& text() {
    flush();
    return _text;
  }

 private:
  void _deliver(std::string_view text) override { _text += text; }

  std::string _text;
};

// Throws usage_error when the file of that name, if there is one, is also one of the inputs, of which "-" is standard
// input and empty names are none.
void check_output_path(const std::string& output, const std::vector<std::string>& inputs);

}  // namespace colx
