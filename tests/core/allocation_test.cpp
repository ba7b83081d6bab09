// SPDX-License-Identifier: MIT
#include "core/allocation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

#include "support/tsv_table.h"

namespace vntts {
namespace {

// A failure is asked for by kind, by a comma-separated list of kinds or for all.
TEST(AllocationTest, FailureIsRequestedByNameListOrAll) {
  for (const auto& row : test::ReadTsv("allocation_failure")) {
    if (row[0] == "(unset)")
      unsetenv("VNTTS_FAIL_ALLOCATION");
    else
      setenv("VNTTS_FAIL_ALLOCATION", row[0].c_str(), 1);
    EXPECT_EQ(AllocationFailureRequested(row.at(1)), row.at(2) == "1") << row[0] << " / " << row[1];
  }
}

struct Hungry {
  Hungry() { throw std::bad_alloc(); }
};
struct Broken {
  Broken() { throw std::runtime_error("broken"); }
};

// Null when the kind is asked to fail or memory runs out inside the constructor; any other
// exception is the caller's.
TEST(AllocationTest, MakeOrNullBuildsOrAnswersNull) {
  EXPECT_EQ(*MakeOrNull<std::string>("plain", "made"), "made");
  setenv("VNTTS_FAIL_ALLOCATION", "plain", 1);
  EXPECT_EQ(MakeOrNull<std::string>("plain", "made"), nullptr);
  EXPECT_EQ(MakeOrNull<Hungry>("hungry"), nullptr);
  EXPECT_THROW(MakeOrNull<Broken>("broken"), std::runtime_error);
}

} // namespace
} // namespace vntts
