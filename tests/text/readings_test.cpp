// SPDX-License-Identifier: MIT
#include "text/readings.h"

#include <gtest/gtest.h>

#include "text/syllable.h"
#include "text/token_class.h"
#include "text_test_util.h"

namespace vntts {
namespace {

using testing::In;
using testing::Words;

TEST(Normalise, ClassesWithoutReadingGiveNothing) {
  for (int cls : {int{'@'}, int{'E'}, int{'F'}, int{'I'}, int{'P'}, 255})
    EXPECT_FALSE(Normalise(cls, "abc").has_value()) << cls;
  EXPECT_EQ(Words(*Normalise('C', "12.")), "mười hai");
  EXPECT_EQ(Words(*Normalise('B', "12/2024", In("tháng"))),
            "mười hai năm hai nghìn không trăm hai mươi bốn");
}

} // namespace
} // namespace vntts
