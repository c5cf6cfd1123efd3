#pragma once

// The two message channels of the program: errors and warnings on standard error, progress on standard output. Every
// message is a whole line and is flushed. Failures of the streams themselves are not looked at: an unattended run must
// not end because nobody listens.

#include <cstdint>
#include <iosfwd>
#include <string_view>

namespace boost {
class progress_timer;
}

namespace colx {

// Significant digits of the overall progress percentage.
inline constexpr std::uint32_t processing_progress_precision = 4;

// Writes messages to a stream, which it does not own.
class Notifier {
 public:
  constexpr explicit Notifier(std::ostream& stream) : _stream(stream) {}

  void fatal_error(std::string_view message) const;
  void warning(std::string_view message) const;
  void info(std::string_view message) const;

  // The stream that progress bars share with the messages.
  std::ostream& stream() const { return _stream; }

 private:
  std::ostream& _stream;
};

// A notifier that also reports the processor time used since the program started.
class ProgressNotifier : public Notifier {
 public:
  using Notifier::Notifier;

  // Writes the message and below it the processor seconds so far.
  void elapsed(std::string_view message) const;

 private:
  // Built before main, so that it measures the whole process; prints its line when the process ends, however that
  // happens.
  static const boost::progress_timer _timer;
};

namespace notifier {
extern const Notifier error;
extern const ProgressNotifier progress;
}  // namespace notifier

// Says on the progress channel that the run failed and ends the process with exit status 1.
[[noreturn]] void exit_failure();

}  // namespace colx
