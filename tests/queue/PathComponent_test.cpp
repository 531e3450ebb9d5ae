#include "queue/PathComponent.h"

#include <gtest/gtest.h>

#include <string>

#include "support/Files.h"
#include "support/Text.h"

namespace {

TEST(IsPathComponent, TakesNamesThatStayInTheirDirectory) {
  struct Row {
    std::string name;
    bool safe;
  };
  const Row rows[] = {{"20261105080703.1234", true},
                      {"example.org", true},
                      {"...", true},
                      {".a", true},
                      {"a..", true},
                      {"a b", true},
                      {"-", true},
                      {"~", true},
                      {"\x80\xFF", true},
                      {std::string(242, 'x'), true},
                      {std::string(243, 'x'), false},
                      {"", false},
                      {".", false},
                      {"..", false},
                      {"/", false},
                      {"a/b", false},
                      {"../a", false},
                      {"a/", false},
                      {"/a", false},
                      {"a\n", false},
                      {"a\tb", false},
                      {"\x1F", false},
                      {"\x7F", false},
                      {std::string("a\0b", 3), false},
                      {std::string(1, '\0'), false}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(IsPathComponent(Text(row.name)), row.safe);
  }
  EXPECT_FALSE(IsPathComponent(SString()));
}

}  // namespace
