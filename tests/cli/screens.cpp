// The texts of standard output and standard error, as a user sees them.
#include <cstddef>
#include <sstream>
#include <string>

#include "harness.h"

namespace colx::cli {

std::string usage_screen() {
  return R"(Usage: ngrex [options]

Mandatory options:
 -i input-file-path
   Path to file with list of input datafile names.
 -n size
   Size of extracted N-grams. Minimum value is 2, maximum value is 7.
 -o output-file-path
   Path to output datafile.

Auxiliary options:
 -c context-output-file
   Output datafile for contexts storage.
 -cf context-morphologic-filter-file-path
   Path to file with morphologic rules to filtrate stored context words.
 -cs context-radius-size-in-sentences
   Size of context radius in sentences, may be from 0 to 2.
   '*' determines significant position, '-' determines insignificant position.
 -cw context-radius-size-in-words
   Size of context radius in words, may be from 1 to 50.
 -d path-to-datafiles-directory
   String that shall be prepended to all paths founded in input file.
 -f n-grams-morphologic-filter-file-path
   Path to file with morphologic rules to filtrate parsed N-grams.
   Must be specified in order to -fs parameter has any effect!
 -fs n-grams-morphologic-filter-stats-file-path
   Path to file for saving statistics of applied morphologic rules.
 -m morphologic-tag-mask
   Mask determines morphologic tag positions significant for n-grams equality.
   Must be specified in order to -cf, -ct, -f parameters have any effect!
   '*' determines significant position, '-' determines insignificant position.
 -p unsigned-number
   Output statistics precision (default is 10).
 -s stats-output-file
   Path to file, where statistics should be stored.
 -ta
   Reaching all of given thresholds is required.
 -tc floating-point-number
   Pearson's chi square test threshold.
 -te floating-point-number
   Only N-grams with at least given estimated frequency will be evaluted.
 -tf unsigned-number
   Only N-grams with at least given frequency will be evaluted.
 -tl floating-point-number
   Log likelihood ratio threshold.
 -tm floating-point-number
   Mutual information threshold.
 -to
   Reaching anyone of given thresholds is required.
 -tp floating-point-number
   Pearson's coeficient threshold.
 -tt floating-point-number
   Student's t-test threshold.
 -tz floating-point-number
   Z score threshold.

)";
}

std::string timer_screen() {
  return "T s\n\n";
}

std::string termination_screen() {
  return "\nProgram terminated due to fatal error(s). See stderr output for more info.\n" + timer_screen();
}

std::string phase_end(const std::string& message) {
  return message + "\nT secs elapsed.\n";
}

std::string startup_screen() {
  return "Performing start-up checks.\n" + phase_end("Finished performing start-up checks.");
}

std::string bar_scale() {
  return "0%   10   20   30   40   50   60   70   80   90   100%\n"
         "|----|----|----|----|----|----|----|----|----|----|\n";
}

std::string stars(std::size_t count) {
  return std::string(count, '*');
}

std::string complete_bar() {
  return bar_scale() + stars(51) + "\n";
}

std::string datafile_screen(const std::string& datafile, std::size_t bytes, const std::string& bar) {
  return "Processing datafile: " + datafile + "\n" + bar +
         phase_end("Finished processing datafile: " + datafile + " (" + std::to_string(bytes) + " bytes)");
}

std::string percentage_screen(const std::string& percentage) {
  return "Overall processing progress: " + percentage + "%\n";
}

std::string processing_screen(const std::string& datafiles) {
  return "Processing input datafiles.\n" + datafiles + phase_end("Finished processing input datafiles.");
}

std::string output_phase(const std::string& bar) {
  return "Writing output datafile.\n" + bar + phase_end("Finished writing output datafile.");
}

std::string contexts_phase(const std::string& bar) {
  return "Writing contexts to file.\n" + bar + phase_end("Finished writing contexts to file.");
}

std::string statistics_phase() {
  return "Writing statistics file.\n" + phase_end("Finished writing statistics file.");
}

std::string filter_statistics_phase() {
  return "Writing morphologic filter statistics file.\n" +
         phase_end("Finished writing morphologic filter statistics file.");
}

std::string farewell_screen() {
  return "Bye!\n" + timer_screen();
}

std::string plain_run_screen(const std::string& datafile, std::size_t bytes) {
  return startup_screen() + processing_screen(datafile_screen(datafile, bytes) + percentage_screen("100")) +
         output_phase() + farewell_screen();
}

std::string fatal(const std::string& message) {
  return "FATAL ERROR: " + message + "\n";
}

std::string warning(const std::string& message) {
  return "WARNING: " + message + "\n";
}

std::string not_a_number() {
  volatile double zero = 0.0;
  std::ostringstream stream;
  stream << zero / zero;
  return stream.str();
}

}  // namespace colx::cli
