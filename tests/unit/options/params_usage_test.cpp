#include <gtest/gtest.h>

#include <sstream>

#include "options/params.h"

namespace colx {
namespace {

constexpr const char* usage =
    R"(Usage: ngrex [options]

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

TEST(PrintUsage, ListsEveryOptionAndClosesWithAnEmptyLine) {
  std::ostringstream out;
  print_usage(out);
  EXPECT_EQ(out.str(), usage);
}

}  // namespace
}  // namespace colx
