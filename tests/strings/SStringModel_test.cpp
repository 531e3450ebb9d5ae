#include "support/SStringModel.h"

#include <gtest/gtest.h>

#include <random>

namespace {

TEST(SStringModel, RandomEditsAgreeWithAModelAndCopiesKeptAsideStayAsTheyWere) {
  constexpr int kSteps = 200'000;
  std::mt19937 random(20260101);  // fixed: a failure comes again
  mailhearth::SStringModel model(
      [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); });
  for (int step = 0; step < kSteps; ++step) ASSERT_EQ(model.Step(), "") << "step " << step;
}

}  // namespace
