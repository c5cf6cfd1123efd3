#include <string>
#include <string_view>

#include <fmt/format.h>

#include "companion/json_text.h"
#include "examples/data_writers.h"
#include "examples/marked_sentence.h"

namespace colx::examples {

namespace {

// A JSON object a line for each example, with all words of its sentence.
class JsonWriter : public ExampleWriter {
 public:
  explicit JsonWriter(Output& output) : _output(output) {}

  void begin(std::size_t n) override { _n = n; }

  void ngram(const Heading& heading) override {
    _json = fmt::format("{{\"rank\":{},\"pattern\":", heading.rank);
    append_json_text(_json, heading.pattern);
    _json += ",\"frequency\":" + (heading.frequency ? std::to_string(*heading.frequency) : "null");
    _of_ngram = _json;
  }

  void example(const concordance::ExampleSentence& sentence, const concordance::Hit& hit) override {
    _json = _of_ngram;
    _add_text("file", sentence.file);
    _json += fmt::format(",\"line\":{}", sentence.line);
    if (const auto& origin = sentence.origin) {
      _add_text("treebank", origin->source);
      _json += fmt::format(",\"treebank_line\":{}", origin->line);
      _add_text_or_null("id", origin->id);
      _add_text_or_null("text", origin->text);
    } else {
      _json += R"(,"treebank":null,"treebank_line":null,"id":null,"text":null)";
    }
    _json += ",\"positions\":[";
    for (std::size_t k = 0; k < _n; ++k)
      _json += fmt::format("{}{}", k == 0 ? "" : ",", hit.positions[k]);
    _json += fmt::format("],\"top\":{},\"words\":[", hit.positions[top_of(sentence, hit, _n)]);
    for (std::size_t i = 0; i < sentence.words.size(); ++i) {
      const concordance::ExampleWord& word = sentence.words[i];
      _json += i == 0 ? "{\"form\":" : ",{\"form\":";
      append_json_text(_json, word.form);
      _add_text("lemma", word.lemma);
      _add_text("tag", word.tag);
      _json += fmt::format(",\"parent\":{}", word.parent);
      _add_text("relation", word.relation);
      _json += '}';
    }
    _output << _json << "]}\n";
    _output.end_row();
  }

  void end() override { _output.flush(); }

 private:
  void _add_text(std::string_view key, std::string_view text) {
    _json += fmt::format(",\"{}\":", key);
    append_json_text(_json, text);
  }

  void _add_text_or_null(std::string_view key, std::string_view text) {
    if (text.empty())
      _json += fmt::format(",\"{}\":null", key);
    else
      _add_text(key, text);
  }

  Output& _output;
  std::size_t _n = 0;
  std::string _of_ngram;  // the first members of its objects
  std::string _json;
};

}  // namespace

std::unique_ptr<ExampleWriter> make_json_lines_writer(Output& output) {
  return std::make_unique<JsonWriter>(output);
}

}  // namespace colx::examples
