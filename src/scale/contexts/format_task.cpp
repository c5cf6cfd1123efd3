#include "scale/contexts/format_task.h"

#include <algorithm>
#include <streambuf>

#include <fmt/format.h>

#include "corpus/datafile_format.h"
#include "corpus/string_store.h"
#include "model/ngram_hash.h"
#include "output/contexts.h"
#include "scale/contexts/first_places.h"
#include "scale/contexts/merge_task.h"
#include "scale/contexts/seen_words_coding.h"
#include "scale/counting/listed_sort.h"
#include "scale/counting/records.h"
#include "scale/shards/number_task.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

constexpr std::string_view text_kind = "cont";

// A file of segments as a stream buffer; text comes in large pieces.
class SegmentBuffer : public std::streambuf {
 public:
  explicit SegmentBuffer(SegmentWriter& file) : _file(file) {}

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    if (size > 0) _file.add({text, static_cast<std::size_t>(size)});
    return size;
  }

 private:
  SegmentWriter& _file;
};

class ContextFormatter {
 public:
  ContextFormatter(const WorkFolder& folder, const ContextLayout& layout, std::ostream& out)
      : _folder(folder), _layout(layout), _lemmas(longest_text), _tags(longest_text), _text(out) {
    load_lemmas(folder, _lemmas);
    load_tags(folder, _tags);
    _record.resize(NGram::_ngrams_memory_sizes.back());
  }

  void run(const ContextPart& part) {
    for (std::size_t type = NGram::_full_ngram_type; type > 0; --type) {
      const std::size_t begin = std::max(part.first_cell, _layout.first_cells[type]);
      const std::size_t end = std::min(part.end_cell, _layout.end_cell(static_cast<std::uint8_t>(type)));
      if (begin < end) _format(static_cast<std::uint8_t>(type), begin, end);
    }
    _text.flush();
  }

 private:
  void _format(std::uint8_t type, std::size_t begin, std::size_t end) {
    std::string bytes;
    for (const std::size_t task : _layout.merges_of(type)) {
      SegmentReader file(_folder.file(merge_name(task), "merged"), merged_kind);
      const std::size_t first = _layout.first_cells[_layout.last_type(task)];
      const std::size_t segments_of_round = _layout.end_cell(_layout.first_type(task)) - first;
      for (std::size_t round = 0; round < file.segments(); round += segments_of_round) {
        file.stop_ahead_of(round + end - first);
        for (std::size_t cell = begin; cell < end; ++cell)
          bytes.append(file.read(round + cell - first));
      }
    }
    if (bytes.empty()) return;
    const Listing listing = listing_of(_folder, _layout, type);
    const unsigned members_count = NGram::_members_count[type];
    std::vector<ListedEntry> entries;
    const char* const bytes_end = bytes.data() + bytes.size();
    for (const char* from = bytes.data(); from != bytes_end;) {
      ListedEntry entry;
      entry.begin = static_cast<std::uint64_t>(from - bytes.data());
      load_members(from, members_count, _members);
      from += members_count * NGram::Member::size;
      entry.first = get_short(from);
      entry.weak_hash = NGramHashCounter::count_hash({_members.data(), members_count});
      entry.bucket = listing.bucket(entry.weak_hash);
      const std::uint64_t size = get_short(from);
      from += size;
      entries.push_back(entry);
    }
    for (const ListedEntry& entry : sorted_by_listing(entries, listing))
      _format_record(type, bytes.data() + entry.begin);
  }

  void _format_record(std::uint8_t type, const char* from) {
    const unsigned members_count = NGram::_members_count[type];
    load_members(from, members_count, _members);
    from += members_count * NGram::Member::size;
    get_short(from);
    get_short(from);
    _parts.clear();
    if (type == NGram::_full_ngram_type) _load_parts(from, true);
    _load_parts(from, false);
    _print_contexts(_text, {_lemmas, _tags}, *NGram::build(_record.data(), type, {_members.data(), members_count}),
                    _parts);
  }

  void _load_parts(const char*& from, bool narrow) {
    for_each_ranked_word(from,
                         [&](std::uint32_t word, std::uint32_t count) { _parts.emplace_back(word, narrow, count); });
  }

  const WorkFolder& _folder;
  const ContextLayout& _layout;
  StringStore<std::uint32_t> _lemmas;
  StringStore<std::uint8_t> _tags;
  TextBuffer _text;
  Members _members;
  std::vector<unsigned char> _record;  // memory of one
  std::vector<PartOfContext> _parts;
};

}  // namespace

std::string format_name(std::size_t part) {
  return fmt::format("format-{}", part);
}

std::uint64_t formats_mark(const WorkFolder& folder, const ContextLayout& layout) {
  std::string key;
  append_fixed(key, folder.mark(number_name));
  for (std::size_t task = 0; task < layout.merges.size(); ++task)
    append_fixed(key, folder.mark(merge_name(task)));
  return checksum(key);
}

std::uint64_t format_key(std::uint64_t formats_mark, const ContextPart& part) {
  std::string key;
  append_fixed(key, formats_mark);
  append_fixed(key, part.first_cell);
  append_fixed(key, part.end_cell);
  return checksum(key);
}

void format_contexts(const WorkFolder& folder, const ContextLayout& layout, std::uint64_t formats_mark,
                     const ContextPart& part, std::size_t number) {
  TaskResult done(folder, format_name(number), format_key(formats_mark, part));
  SegmentWriter file(folder.file(format_name(number), "text"), text_kind);
  SegmentBuffer buffer(file);
  std::ostream out(&buffer);
  out.exceptions(std::ios::badbit);
  ContextFormatter(folder, layout, out).run(part);
  done.add_file("text", file.finish());
  done.save();
}

void write_context_file(const WorkFolder& folder, const Plan& plan, std::ostream& out) {
  const Numbering numbering = Numbering::from(folder.result(number_name));
  const ContextLayout layout = ContextLayout::from(folder, plan, numbering.shards);
  const std::size_t parts = context_parts(merged_bytes(folder, plan, layout), context_part_bytes(plan)).size();
  for (std::size_t part = 0; part < parts; ++part) {
    SegmentReader file(folder.file(format_name(part), "text"), text_kind);
    for (std::size_t i = 0; i < file.segments(); ++i)
      out << file.read(i);
  }
  out << '\n';
}

}  // namespace colx::scale
