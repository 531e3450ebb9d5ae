#include "system/StartUp.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string steps;

constexpr StartUpModule kModules[] = {
    {[] { steps += "A"; }, [] { steps += "a"; }},
    {[] { steps += "B"; }, nullptr},
    {nullptr, [] { steps += "c"; }},
    {[] { steps += "D"; }, [] { steps += "d"; }},
};

TEST(StartUpTable, StartsFromTheLastAndStopsFromTheFirst) {
  steps.clear();
  StartUpTable table(kModules);
  table.Enter();
  EXPECT_EQ(steps, "DBA");
  table.Leave();
  EXPECT_EQ(steps, "DBAacd");
}

TEST(StartUpTable, StartsWithTheFirstGuardAndStopsWithTheLast) {
  steps.clear();
  StartUpTable table(kModules);
  table.Enter();
  table.Enter();
  table.Leave();
  table.Enter();
  EXPECT_EQ(steps, "DBA");
  table.Leave();
  EXPECT_EQ(steps, "DBA");
  table.Leave();
  EXPECT_EQ(steps, "DBAacd");
}

TEST(StartUpTable, StartsAnewAfterAnEnd) {
  steps.clear();
  StartUpTable table(kModules);
  for (int turn = 0; turn < 2; ++turn) {
    table.Enter();
    table.Leave();
  }
  EXPECT_EQ(steps, "DBAacdDBAacd");
}

TEST(StartUpTable, StartsAndStopsOnlyWithTheCounterAtZero) {
  steps.clear();
  StartUpTable table(kModules);
  table.Leave();  // one too many: below 0
  table.Enter();
  EXPECT_EQ(steps, "");
  table.Enter();
  EXPECT_EQ(steps, "DBA");
}

TEST(StartUpTable, MayBeEmpty) {
  StartUpTable table({});
  table.Enter();
  table.Leave();
}

}  // namespace
