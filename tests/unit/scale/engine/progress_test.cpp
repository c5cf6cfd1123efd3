// Which part of the work is done, and how long the rest will take.

#include "scale/engine/progress.h"

#include <gtest/gtest.h>

namespace colx::scale {
namespace {

class ForecastTest : public ::testing::Test {
 protected:
  Forecast forecast{{{"first", 0.25}, {"second", 0.5}, {"third", 0.25}}};
};

TEST_F(ForecastTest, AStageCountsByItsShare) {
  forecast.begin("first");
  forecast.set(0.5, 0);
  EXPECT_DOUBLE_EQ(forecast.done(), 0.125);
  forecast.begin("second");
  forecast.set(0.5, 0);
  EXPECT_DOUBLE_EQ(forecast.done(), 0.5);
  forecast.begin("third");
  forecast.set(1, 0);
  EXPECT_DOUBLE_EQ(forecast.done(), 1);
}

TEST_F(ForecastTest, WhatIsDoneNeverBecomesLess) {
  forecast.begin("second");
  forecast.set(0.8, 0);
  const double done = forecast.done();
  forecast.begin("first");
  forecast.set(0.1, 0);
  EXPECT_EQ(forecast.done(), done);
  forecast.begin("unknown");
  forecast.set(0.9, 0);
  EXPECT_EQ(forecast.done(), done);
}

TEST_F(ForecastTest, WhatWasDoneBeforeTheRunCountsAsDoneButSaysNothingOfItsSpeed) {
  forecast.begin("first");
  forecast.set(1, 1);
  EXPECT_DOUBLE_EQ(forecast.done(), 0.25);
  EXPECT_LT(forecast.seconds_left(10), 0);
  forecast.begin("second");
  forecast.set(0.75, 0.25);
  EXPECT_DOUBLE_EQ(forecast.done(), 0.625);
  // A quarter of the work took ten seconds.
  EXPECT_DOUBLE_EQ(forecast.seconds_left(10), 15);
}

TEST_F(ForecastTest, NobodyKnowsInTheFirstMoment) {
  forecast.begin("first");
  forecast.set(0.9, 0);
  EXPECT_LT(forecast.seconds_left(0.1), 0);
}

TEST(TimeLeftTest, IsRoundedUp) {
  EXPECT_EQ(time_left(0), "0 s left");
  EXPECT_EQ(time_left(2.1), "3 s left");
  EXPECT_EQ(time_left(59.5), "1 min left");
  EXPECT_EQ(time_left(61), "2 min left");
  EXPECT_EQ(time_left(3600), "1 h 0 min left");
  EXPECT_EQ(time_left(3600 * 30 + 61), "30 h 2 min left");
}

}  // namespace
}  // namespace colx::scale
