#include "base/config.h"

#include <cstring>

namespace colx::settings {

const char* input_file = nullptr;
std::uint8_t n = 0;
const char* output_file = nullptr;
const char* context_output_file = nullptr;
const char* context_filter_file = nullptr;
ContextWindow context_window;
const char* dir = nullptr;
const char* morphologic_filter_file = nullptr;
const char* morphologic_filter_stats_file = nullptr;
const char* morphologic_tag_mask = nullptr;
std::uint32_t precision = constants::default_precision;
const char* stats_file = nullptr;
bool all_thresholds_together = false;
Thresholds thresholds;
Sieves sieves;
bool sort = false;
bool verbose = false;
std::uint32_t bucket_size = 4;
std::uint32_t crop_ratio = 2;

bool ready() {
  return input_file != nullptr && n != 0 && output_file != nullptr;
}

bool correct() {
  if (input_file == nullptr || output_file == nullptr) return false;
  if (n < 2 || n > constants::max_grammity) return false;
  if (!check_mask(morphologic_tag_mask)) return false;
  if (precision == 0) return false;
  if (!context_tracing_on()) return true;
  switch (context_window.mode) {
    case ContextWindow::sentences:
      return context_window.size <= constants::sentences_radius_max_size;
    case ContextWindow::words:
      return context_window.size >= 1 && context_window.size <= constants::words_radius_max_size;
  }
  return false;
}

bool check_mask(const char* mask) {
  constexpr char marks[] = {constants::significant_position_mark, constants::insignificant_position_mark, '\0'};
  return mask == nullptr || mask[std::strspn(mask, marks)] == '\0';
}

bool _mask_less_than(const char* a, const char* b) {
  if (a == nullptr) return true;
  if (b == nullptr) return false;
  for (; *a != '\0' && *b != '\0'; ++a, ++b) {
    if (*a == constants::significant_position_mark && *b == constants::insignificant_position_mark) return false;
  }
  return *a == '\0';
}

bool context_tracing_on() {
  return context_output_file != nullptr;
}

}  // namespace colx::settings
