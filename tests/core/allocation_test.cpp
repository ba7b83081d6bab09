#include "core/allocation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

namespace vntts {
namespace {

class AllocationTest : public ::testing::Test {
protected:
  void TearDown() override { unsetenv("VNTTS_FAIL_ALLOCATION"); }
};

TEST_F(AllocationTest, FailureIsRequestedByNameListOrAll) {
  struct Case {
    const char* setting;
    const char* what;
    bool fails;
  };
  const Case cases[] = {
      {nullptr, "engine", false},
      {"", "engine", false},
      {"engine", "engine", true},
      {"engine", "archive", false},
      {"archive,engine", "engine", true},
      {"archive,engine", "archive", true},
      {"engin", "engine", false},
      {"engines", "engine", false},
      {"all", "engine", true},
      {",engine,", "engine", true},
  };
  for (const auto& c : cases) {
    if (c.setting)
      setenv("VNTTS_FAIL_ALLOCATION", c.setting, 1);
    else
      unsetenv("VNTTS_FAIL_ALLOCATION");
    EXPECT_EQ(AllocationFailureRequested(c.what), c.fails)
        << (c.setting ? c.setting : "(unset)") << " / " << c.what;
  }
}

struct Plain {
  explicit Plain(int v) : value(v) {}
  int value;
};
struct Hungry {
  Hungry() { throw std::bad_alloc(); }
};
struct Broken {
  Broken() { throw std::runtime_error("broken"); }
};

TEST_F(AllocationTest, MakeOrNullBuildsOrAnswersNull) {
  const auto made = MakeOrNull<Plain>("plain", 42);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->value, 42);

  setenv("VNTTS_FAIL_ALLOCATION", "plain", 1);
  EXPECT_EQ(MakeOrNull<Plain>("plain", 42), nullptr);
  unsetenv("VNTTS_FAIL_ALLOCATION");

  EXPECT_EQ(MakeOrNull<Hungry>("hungry"), nullptr); // memory ran out inside the constructor
  EXPECT_THROW(MakeOrNull<Broken>("broken"), std::runtime_error);
}

} // namespace
} // namespace vntts
