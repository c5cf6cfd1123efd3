#include "scale/engine/content_versions.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <new>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "scale/engine/progress.h"
#include "scale/engine/task_pool.h"
#include "spill/encoding.h"
#include "spill/segment_file.h"

namespace colx::scale {

namespace {

constexpr std::uint64_t piece_size = std::uint64_t{1} << 20;
constexpr std::size_t pieces_of_a_unit = 64;
constexpr std::uint64_t bytes_worth_a_process = std::uint64_t{64} << 20;

// What one process reads at a time: some pieces of a file.
struct Unit {
  std::size_t file;
  std::uint64_t begin;
  std::uint64_t end;
  std::size_t first_sum;
};

// The checksums of pieces, and the next unit that nobody has taken, in memory that processes share.
class Sums {
 public:
  explicit Sums(std::size_t count) : _bytes(sizeof(Shared) + count * sizeof(std::uint64_t)) {
    void* const memory = ::mmap(nullptr, _bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::bad_alloc();
    _shared = new (memory) Shared;
  }
  ~Sums() { ::munmap(_shared, _bytes); }
  Sums(const Sums&) = delete;
  Sums& operator=(const Sums&) = delete;

  std::size_t take() { return _shared->next++; }
  std::uint64_t& operator[](std::size_t i) { return reinterpret_cast<std::uint64_t*>(_shared + 1)[i]; }

 private:
  struct alignas(std::uint64_t) Shared {
    std::atomic<std::size_t> next = 0;
  };

  std::size_t _bytes;
  Shared* _shared;
};

// Fills a piece from a place in a file. Returns the bytes that there were. Throws input_error.
std::size_t _read_piece(const Descriptor& file, const std::string& path, std::uint64_t place, char* to,
                        std::size_t size) {
  std::size_t held = 0;
  while (held < size) {
    const ssize_t count = ::pread(file.number(), to + held, size - held, static_cast<off_t>(place + held));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw input_error("cannot read " + path);
    if (count == 0) break;
    held += static_cast<std::size_t>(count);
  }
  return held;
}

// A sum of 0 stands for a piece that cannot be read.
void _sum_up(const std::string& path, const Unit& unit, Sums& sums) {
  try {
    const Descriptor file = open_for_reading(path == "-" ? "./-" : path);
    std::string piece(std::min(piece_size, unit.end - unit.begin), '\0');
    std::size_t sum = unit.first_sum;
    for (std::uint64_t place = unit.begin; place < unit.end; place += piece_size) {
      const auto wanted = static_cast<std::size_t>(std::min(piece_size, unit.end - place));
      const std::size_t size = _read_piece(file, path, place, piece.data(), wanted);
      sums[sum++] = std::max<std::uint64_t>(checksum({piece.data(), size}), 1);
    }
  } catch (const input_error&) {
    // What is not summed up says so.
  }
}

std::uint64_t _version(Sums& sums, std::size_t begin, std::size_t end, std::uint64_t size) {
  std::string all;
  append_fixed(all, size);
  for (std::size_t i = begin; i < end; ++i) {
    if (sums[i] == 0) return 0;
    append_fixed(all, sums[i]);
  }
  return checksum(all);
}

}  // namespace

std::vector<std::uint64_t> content_versions(const std::vector<SizedFile>& files, std::size_t jobs) {
  std::vector<Unit> units;
  std::vector<std::size_t> begins{0};
  std::uint64_t bytes = 0;
  for (std::size_t i = 0; i < files.size(); ++i) {
    std::size_t sum = begins.back();
    constexpr std::uint64_t unit_size = piece_size * pieces_of_a_unit;
    for (std::uint64_t place = 0; place < files[i].size; place += unit_size, sum += pieces_of_a_unit)
      units.push_back({i, place, std::min(place + unit_size, files[i].size), sum});
    begins.push_back(begins.back() + static_cast<std::size_t>((files[i].size + piece_size - 1) / piece_size));
    bytes += files[i].size;
  }
  Sums sums(begins.back());
  Progress::begin_stage("plan", units.size());
  const auto work = [&] {
    for (std::size_t unit; (unit = sums.take()) < units.size();) {
      _sum_up(files[units[unit].file].path, units[unit], sums);
      Progress::finish();
    }
  };
  const std::size_t processes = std::min<std::size_t>(jobs, static_cast<std::size_t>(bytes / bytes_worth_a_process));
  if (processes > 1) {
    do_together(std::vector<Task>(processes, Task{"plan", 0, work}));
  } else {
    work();
  }
  std::vector<std::uint64_t> versions;
  for (std::size_t i = 0; i < files.size(); ++i)
    versions.push_back(_version(sums, begins[i], begins[i + 1], files[i].size));
  return versions;
}

}  // namespace colx::scale
