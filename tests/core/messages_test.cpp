#include <gtest/gtest.h>

#include "core/messages.h"

namespace vntts {
namespace {

TEST(RecordedMessages, KeepsTextCaptionAndIconInOrder) {
  RecordedMessages sink;
  Messages& m = sink;
  m.report("Complete!", "", MessageIcon::Information);
  m.report("Out off memory !!!", "Error", MessageIcon::Error);
  ASSERT_EQ(sink.entries.size(), 2u);
  EXPECT_EQ(sink.entries[1].text, "Out off memory !!!");
  EXPECT_EQ(sink.entries[1].caption, "Error");
  EXPECT_EQ(sink.entries[0].icon, MessageIcon::Information);
}

} // namespace
} // namespace vntts
