#include <algorithm>
#include <string_view>

#include "companion/utf8.h"
#include "examples/heading.h"
#include "examples/marked_text.h"
#include "examples/reading_writers.h"
#include "examples/tree_drawing.h"

namespace colx::examples {

namespace {

// The name of each sentence and below it the sentence itself, folded on a terminal only.
class TextWriter : public ExampleWriter {
 public:
  TextWriter(Output& output, const Look& look)
      : _output(output), _look(look), _marks(look.colour ? Marks::colour : Marks::brackets) {}

  void begin(std::size_t n) override { _n = n; }

  void ngram(const Heading& heading) override {
    if (!_is_first) _output << '\n';
    _is_first = false;
    _output << (_look.colour ? "\x1b[1m" : "") << heading_text(heading) << (_look.colour ? "\x1b[0m" : "") << '\n';
    _output.end_row();
  }

  void example(const concordance::ExampleSentence& sentence, const concordance::Hit& hit) override {
    _output << "  " << (_look.colour ? "\x1b[36m" : "") << printable(name_of(sentence))
            << (_look.colour ? "\x1b[0m" : "") << '\n';
    MarkedText text(_marks);
    for (const Piece& piece : marked_sentence(sentence, hit, _n))
      text.append(piece);
    _write_folded(text);
    if (_look.tree) draw_tree(_output, sentence, hit, _n, _marks, _look.width == 0 ? usual_width : _look.width);
    _output.end_row();
  }

  void end() override { _output.flush(); }

 private:
  static constexpr std::string_view indentation = "    ";
  static constexpr std::size_t least_width = 20;
  static constexpr std::size_t usual_width = 80;  // of trees, where there is no terminal

  void _write_folded(const MarkedText& text) {
    const std::size_t columns =
        _look.width == 0 ? text.width() : std::max(_look.width, indentation.size() + least_width) - indentation.size();
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t end = text.end_of_line(begin, columns);
      _output << indentation;
      text.write(_output, begin, text.before_blanks(begin, end));
      _output << '\n';
      begin = text.behind_blanks(end);
    }
  }

  Output& _output;
  Look _look;
  Marks _marks;
  std::size_t _n = 0;
  bool _is_first = true;
};

}  // namespace

std::unique_ptr<ExampleWriter> make_text_writer(Output& output, const Look& look) {
  return std::make_unique<TextWriter>(output, look);
}

}  // namespace colx::examples
