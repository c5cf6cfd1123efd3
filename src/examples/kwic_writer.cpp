#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/utf8.h"
#include "examples/direction_marks.h"
#include "examples/heading.h"
#include "examples/marked_text.h"
#include "examples/reading_writers.h"
#include "examples/tree_drawing.h"

namespace colx::examples {

namespace {

// One line for each example: the name of the sentence, then the sentence with its top words below one another, cut on
// both sides. Widths are taken from the first examples of an N-gram, so that memory stays constant; what is wider later
// is cut or, if it is a top word, pushes what follows to the right.
class KwicWriter : public ExampleWriter {
 public:
  KwicWriter(Output& output, const Look& look)
      : _output(output),
        _look(look),
        _marks(look.colour ? Marks::colour : Marks::brackets),
        _width(std::max(look.width == 0 ? usual_width : look.width, least_width)) {}

  void begin(std::size_t n) override { _n = n; }

  void ngram(const Heading& heading) override {
    _settle();
    if (!_is_first) _output << '\n';
    _is_first = false;
    _is_settled = false;
    _output << (_look.colour ? "\x1b[1m" : "") << heading_text(heading) << (_look.colour ? "\x1b[0m" : "") << '\n';
    _output.end_row();
  }

  void example(const concordance::ExampleSentence& sentence, const concordance::Hit& hit) override {
    Line line{MarkedText(_marks), MarkedText(_marks), ""};
    line.name.append(name_of(sentence));
    for (const Piece& piece : marked_sentence(sentence, hit, _n)) {
      if (piece.is_top) line.top_begin = line.text.size();
      line.text.append(piece);
      if (piece.is_top) line.top_end = line.text.size();
    }
    if (_look.tree) {
      TextOutput tree;
      draw_tree(tree, sentence, hit, _n, _marks, _width);
      line.tree = tree.text();
    }
    if (_is_settled) {
      _write(line);
      return;
    }
    _held.push_back(std::move(line));
    if (_held.size() == lines_measured) _settle();
  }

  void end() override {
    _settle();
    _output.flush();
  }

 private:
  static constexpr std::size_t usual_width = 100;  // where there is no terminal
  static constexpr std::size_t least_width = 40;
  static constexpr std::size_t lines_measured = 1000;
  static constexpr std::string_view gap = "  ";
  static constexpr std::string_view ellipsis = "…";

  struct Line {
    MarkedText name;
    MarkedText text;
    std::string tree;  // drawn
    std::size_t top_begin = 0;
    std::size_t top_end = 0;
  };

  // Shares the columns out, and writes what was held back to measure it.
  void _settle() {
    std::size_t name = 0;
    std::size_t top = 0;
    for (const Line& line : _held) {
      name = std::max(name, line.name.width());
      top = std::max(top, line.text.width(line.top_begin, line.top_end));
    }
    _name_columns = std::min(name, _width / 4);
    const std::size_t columns = _width - _name_columns - gap.size();
    _left_columns = (columns - std::min(top, columns / 3)) / 2;
    for (const Line& line : _held)
      _write(line);
    _held.clear();
    _is_settled = true;
  }

  void _write(const Line& line) {
    _write_name(line.name);
    const bool is_right_to_left = line.text.is_right_to_left();
    if (is_right_to_left) _output << begin_right_to_left;
    _write_left(line);
    line.text.write(_output, line.top_begin, line.top_end);
    const std::size_t left = _name_columns + gap.size() + _left_columns;
    const std::size_t used = left + line.text.width(line.top_begin, line.top_end);
    const std::size_t free = _write_right(line, used < _width ? _width - used : 0);
    if (is_right_to_left) _output << std::string(free, ' ') << end_right_to_left;
    _output << '\n' << line.tree;
    _output.end_row();
  }

  // The end of a long name tells more than its beginning.
  void _write_name(const MarkedText& name) {
    const bool fits = name.width() <= _name_columns;
    const std::size_t begin = fits ? 0 : name.begin_of(name.size(), _name_columns - 1);
    _output << (_look.colour ? "\x1b[36m" : "") << (fits ? "" : ellipsis);
    name.write(_output, begin, name.size());
    _output << (_look.colour ? "\x1b[0m" : "")
            << std::string(_name_columns - name.width(begin, name.size()) - (fits ? 0 : 1), ' ') << gap;
  }

  void _write_left(const Line& line) {
    const bool fits = line.text.width(0, line.top_begin) <= _left_columns;
    const std::size_t begin = fits ? 0 : line.text.begin_of(line.top_begin, _left_columns - 1);
    _output << std::string(_left_columns - line.text.width(begin, line.top_begin) - (fits ? 0 : 1), ' ')
            << (fits ? "" : ellipsis);
    line.text.write(_output, begin, line.top_begin);
  }

  // Returns how many columns are left over.
  std::size_t _write_right(const Line& line, std::size_t columns) {
    const bool fits = line.text.width(line.top_end, line.text.size()) <= columns;
    if (columns == 0) return 0;
    const std::size_t end = fits ? line.text.size() : line.text.end_of(line.top_end, columns - 1);
    line.text.write(_output, line.top_end, end);
    if (!fits) _output << ellipsis;
    return columns - line.text.width(line.top_end, end) - (fits ? 0 : 1);
  }

  Output& _output;
  Look _look;
  Marks _marks;
  std::size_t _width;
  std::size_t _n = 0;
  std::size_t _name_columns = 0;
  std::size_t _left_columns = 0;
  bool _is_first = true;
  bool _is_settled = true;
  std::vector<Line> _held;  // of the N-gram in hand
};

}  // namespace

std::unique_ptr<ExampleWriter> make_kwic_writer(Output& output, const Look& look) {
  return std::make_unique<KwicWriter>(output, look);
}

}  // namespace colx::examples
