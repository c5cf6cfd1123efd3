#include "scale/contexts/first_places.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "scale/contexts/merge_task.h"
#include "spill/segment_file.h"

namespace colx::scale {

namespace {

// The first places of one type.
class FirstPlaces {
 public:
  FirstPlaces(const WorkFolder& folder, const ContextLayout& layout, std::uint8_t type) {
    const std::vector<std::size_t> tasks = layout.merges_of(type);
    for (const std::size_t task : tasks) {
      const std::size_t first = layout.first_type(task);
      _files.push_back({SegmentReader(folder.file(merge_name(task), "firsts"), firsts_kind, std::size_t{4} << 10,
                                      SegmentReader::hold_for(tasks.size())),
                        (type - first) * firsts_pieces, (layout.last_type(task) - first + 1) * firsts_pieces});
    }
  }

  // How many there are in a piece of the corpus.
  std::uint64_t count(std::size_t piece) {
    std::uint64_t bytes = 0;
    _for_each_segment(piece, [&](const SegmentReader& file, std::size_t segment) { bytes += file.size(segment); });
    return bytes / sizeof(std::uint64_t);
  }

  // These, ascending.
  std::vector<std::uint64_t> load(std::size_t piece) {
    std::vector<std::uint64_t> places;
    _for_each_segment(piece, [&](SegmentReader& file, std::size_t segment) {
      const std::string_view bytes = file.read(segment);
      const std::size_t before = places.size();
      places.resize(before + bytes.size() / sizeof(std::uint64_t));
      if (!bytes.empty()) std::memcpy(places.data() + before, bytes.data(), bytes.size());
    });
    std::sort(places.begin(), places.end());
    return places;
  }

 private:
  struct File {
    SegmentReader segments;
    std::size_t first;     // segment of the type
    std::size_t of_round;  // segments
  };

  template <typename Take>
  void _for_each_segment(std::size_t piece, const Take& take) {
    for (File& file : _files)
      for (std::size_t i = file.first + piece; i < file.segments.segments(); i += file.of_round)
        take(file.segments, i);
  }

  std::vector<File> _files;
};

}  // namespace

Listing listing_of(const WorkFolder& folder, const ContextLayout& layout, std::uint8_t type) {
  Listing listing(std::max<std::uint64_t>(layout.records[type], 1));
  const std::vector<std::uint64_t> growing = listing.growing_records();
  std::vector<std::uint64_t> places;
  if (!growing.empty()) {
    FirstPlaces first_places(folder, layout, type);
    std::size_t piece = 0;
    std::uint64_t before = 0;
    std::uint64_t count = first_places.count(piece);
    std::vector<std::uint64_t> held;
    for (const std::uint64_t number : growing) {
      for (; before + count <= number; count = first_places.count(++piece)) {
        before += count;
        held.clear();
      }
      if (held.empty()) held = first_places.load(piece);
      places.push_back(held[static_cast<std::size_t>(number - before)]);
    }
  }
  listing.set_growing_records(std::move(places));
  return listing;
}

}  // namespace colx::scale
