#pragma once

// The run's parameters: process-wide settings, written once by the command-line parser and read everywhere, and the
// fixed limits beside them. It includes nothing of the project.

#include <cstdint>
#include <limits>

namespace colx {

// The reach of the context around an N-gram: a radius and what it counts.
struct ContextWindow {
  enum Mode : unsigned { sentences = 0, words = 1 };
  Mode mode = sentences;
  std::uint32_t size = 0;
};

// Least values of the association measures; a value not greater than 0 means that no threshold is set.
struct Thresholds {
  double chi_square = 0.0;
  double log_likelihood = 0.0;
  double mutual_information = 0.0;
  double pearson = 0.0;
  double t_test = 0.0;
  double z_score = 0.0;
};

// Least expected and least observed frequency of an N-gram; 0 lets everything pass.
struct Sieves {
  double estimated_frequency = 0.0;
  std::uint32_t frequency = 0;
};

// Limits fixed when the program is compiled.
namespace constants {
inline constexpr std::uint32_t max_grammity = 7;
inline constexpr std::uint32_t bits_per_char = 8;
inline constexpr std::uint32_t ngram_within_block = 16384;
inline constexpr std::uint32_t default_precision = 10;
inline constexpr std::uint32_t max_collocation_window_size = 32;
inline constexpr char significant_position_mark = '*';
inline constexpr char insignificant_position_mark = '-';
inline constexpr std::uint32_t sentences_radius_max_size = 2;
inline constexpr std::uint32_t words_radius_max_size = 50;
inline constexpr std::uint32_t max_sentence_length = std::numeric_limits<std::uint16_t>::max();
}  // namespace constants

// What the command line asked for. Texts belong to the command line and live as long as the process; null means unset.
namespace settings {
extern const char* input_file;
extern std::uint8_t n;
extern const char* output_file;
extern const char* context_output_file;
extern const char* context_filter_file;
extern ContextWindow context_window;
extern const char* dir;
extern const char* morphologic_filter_file;
extern const char* morphologic_filter_stats_file;
extern const char* morphologic_tag_mask;
extern std::uint32_t precision;
extern const char* stats_file;
extern bool all_thresholds_together;
extern Thresholds thresholds;
extern Sieves sieves;
extern bool sort;
extern bool verbose;
extern std::uint32_t bucket_size;
extern std::uint32_t crop_ratio;

// Tells whether the mandatory settings are there: list file, N and output datafile.
bool ready();

// Tells whether every setting is within its range. The context window counts only when contexts are written.
bool correct();

// Tells whether a tag mask is unset, empty, or made of the two mark characters only.
bool check_mask(const char* mask);

// Orders two masks: false as soon as `a` keeps a position that `b` drops, otherwise true when `a` is not the longer
// one. An unset `a` precedes everything, and an unset `b` nothing but that.
bool _mask_less_than(const char* a, const char* b);

// Tells whether contexts are collected, that is, whether a contexts file is asked for.
bool context_tracing_on();
}  // namespace settings

}  // namespace colx
