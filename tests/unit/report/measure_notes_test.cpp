#include "report/measure_notes.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "rows/association.h"

namespace colx::report {
namespace {

TEST(MeasureNotes, AreThereForEveryMeasureInTheirOrder) {
  ASSERT_EQ(measure_notes().size(), table::associations().size());
  for (std::size_t i = 0; i < measure_notes().size(); ++i) {
    EXPECT_EQ(measure_notes()[i].name, table::associations()[i].name);
    EXPECT_EQ(&note_on(table::associations()[i].name), &measure_notes()[i]);
  }
}

TEST(MeasureNotes, SayHowToReadAValueInOneSentence) {
  std::set<std::string> titles;
  for (const MeasureNote& note : measure_notes()) {
    EXPECT_FALSE(note.formula.empty()) << note.name;
    EXPECT_TRUE(note.reading.ends_with('.')) << note.name;
    EXPECT_EQ(note.reading.find(". "), std::string::npos) << note.name;
    EXPECT_TRUE(titles.insert(std::string(note.title)).second) << note.title;
  }
}

}  // namespace
}  // namespace colx::report
