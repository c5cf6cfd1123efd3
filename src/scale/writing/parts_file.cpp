#include "scale/writing/parts_file.h"

#include <pthread.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "scale/engine/progress.h"
#include "scale/engine/task_pool.h"

namespace colx::scale {

namespace {

// What the processes know of one another, in memory that they share. One that dies within it leaves the others waiting;
// whoever waits for the processes then ends them.
class Queue {
 public:
  // The queue in shared memory; throws std::bad_alloc.
  static Queue* make() {
    void* const memory = ::mmap(nullptr, sizeof(Queue), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::bad_alloc();
    return new (memory) Queue;
  }
  static void destroy(Queue* queue) { ::munmap(queue, sizeof(Queue)); }

  // The next part that nobody has taken.
  std::size_t take() {
    const Held held(*this);
    return _next++;
  }

  // Whether a part knows where it begins.
  bool is_placed(std::size_t part) {
    const Held held(*this);
    return _first_unfinished == part;
  }

  // Waits until it does, and returns the place.
  std::uint64_t place_of(std::size_t part) {
    const Held held(*this);
    while (_first_unfinished != part)
      ::pthread_cond_wait(&_changed, &_mutex);
    return _begin;
  }

  // Says how long a part is that knows where it begins.
  void finish(std::uint64_t size) {
    const Held held(*this);
    ++_first_unfinished;
    _begin += size;
    ::pthread_cond_broadcast(&_changed);
  }

 private:
  Queue() {
    pthread_mutexattr_t mutex;
    ::pthread_mutexattr_init(&mutex);
    ::pthread_mutexattr_setpshared(&mutex, PTHREAD_PROCESS_SHARED);
    ::pthread_mutex_init(&_mutex, &mutex);
    ::pthread_mutexattr_destroy(&mutex);
    pthread_condattr_t changed;
    ::pthread_condattr_init(&changed);
    ::pthread_condattr_setpshared(&changed, PTHREAD_PROCESS_SHARED);
    ::pthread_cond_init(&_changed, &changed);
    ::pthread_condattr_destroy(&changed);
  }

  struct Held {
    explicit Held(Queue& held) : queue(held) { ::pthread_mutex_lock(&queue._mutex); }
    ~Held() { ::pthread_mutex_unlock(&queue._mutex); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    Queue& queue;
  };

  pthread_mutex_t _mutex;
  pthread_cond_t _changed;
  std::size_t _next = 0;
  std::size_t _first_unfinished = 0;
  std::uint64_t _begin = 0;  // of that part
};

// The texts of the parts of one process on their way to their places, one after another. They come in pieces of some
// size, whose memory is used again.
class PartBuffer : public std::streambuf {
 public:
  PartBuffer(const NewFile& file, Queue& queue, std::size_t memory) : _file(file), _queue(queue), _memory(memory) {}

  void begin(std::size_t part) {
    _part = part;
    _is_placed = false;
    _written = 0;
  }

  void finish() {
    if (!_is_placed) _place = _queue.place_of(_part);
    _queue.finish(_written + _size);
    _write_held();
  }

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    if (_count == _held.size()) _held.emplace_back();
    _held[_count++].assign(text, static_cast<std::size_t>(size));
    _size += static_cast<std::size_t>(size);
    if (_is_placed || _size > _memory || _queue.is_placed(_part)) {
      if (!_is_placed) _place = _queue.place_of(_part);
      _is_placed = true;
      _write_held();
    }
    return size;
  }
  int_type overflow(int_type c) override {
    const char letter = traits_type::to_char_type(c);
    xsputn(&letter, 1);
    return c;
  }

 private:
  void _write_held() {
    const std::uint64_t begin = _place + _written;
    for (std::size_t i = 0; i < _count; ++i) {
      _file.write_at(_held[i], _place + _written);
      _written += _held[i].size();
    }
    _file.send_to_disk(begin, _size);
    _count = 0;
    _size = 0;
  }

  const NewFile& _file;
  Queue& _queue;
  std::size_t _memory;
  std::size_t _part = 0;
  std::vector<std::string> _held;  // the first `_count` of them
  std::size_t _count = 0;
  std::size_t _size = 0;  // of what is held
  bool _is_placed = false;
  std::uint64_t _place = 0;
  std::uint64_t _written = 0;
};

// A new file as a stream buffer.
class NewFileBuffer : public std::streambuf {
 public:
  explicit NewFileBuffer(const NewFile& file) : _file(file) {}

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    _file.write({text, static_cast<std::size_t>(size)});
    return size;
  }
  int_type overflow(int_type c) override {
    const char letter = traits_type::to_char_type(c);
    _file.write({&letter, 1});
    return c;
  }

 private:
  const NewFile& _file;
};

// Calls `use` with a stream that throws what its buffer throws.
template <typename Use>
void _with_stream(std::streambuf& buffer, const Use& use) {
  std::ostream out(&buffer);
  out.exceptions(std::ios::badbit);
  use(out);
}

void _work(const NewFile& file, const PartsFile& content, Queue& queue) {
  PartBuffer buffer(file, queue, content.memory);
  for (std::size_t part; (part = queue.take()) < content.parts;) {
    buffer.begin(part);
    _with_stream(buffer, [&](std::ostream& out) { content.make(part, out); });
    buffer.finish();
    Progress::finish();
  }
}

void _write_parallel(const NewFile& file, const PartsFile& content, std::size_t processes) {
  const std::unique_ptr<Queue, void (*)(Queue*)> queue(Queue::make(), Queue::destroy);
  std::vector<Task> tasks;
  for (std::size_t i = 0; i < processes; ++i)
    tasks.push_back({"write", 0, [&] {
                       try {
                         _work(file, content, *queue);
                       } catch (const std::bad_alloc&) {
                         throw out_of_memory("while writing file: " + file.path());
                       }
                     }});
  do_together(tasks);
}

}  // namespace

void write_parts(const NewFile& file, const PartsFile& content) {
  const std::size_t processes = std::min(content.processes, content.parts);
  if (processes > 1 && !file.temporary_path().empty()) {
    _write_parallel(file, content, processes);
    return;
  }
  NewFileBuffer buffer(file);
  _with_stream(buffer, [&](std::ostream& out) {
    for (std::size_t part = 0; part < content.parts; ++part) {
      content.make(part, out);
      Progress::finish();
      Progress::draw();
    }
  });
}

}  // namespace colx::scale
