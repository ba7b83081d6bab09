// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "ui/file_filter.h"

namespace vntts::ui {
namespace {

TEST(FileFilter, PairsAreReadAsTheyStandQuirksIncluded) {
  EXPECT_EQ(
      ParseFileFilter("Text Files (*.txt)|*.txt|All Files (*.*)|*.*|"),
      (std::vector<FileFilterEntry>{{"Text Files (*.txt)", "*.txt"}, {"All Files (*.*)", "*.*"}}));
  // The record window's filter: its first pair has no pattern of its own.
  EXPECT_EQ(ParseFileFilter("Wave Files (*.wav)|All Files (*.*)|*.*||"),
            (std::vector<FileFilterEntry>{{"Wave Files (*.wav)", "All Files (*.*)"}, {"*.*", ""}}));
  EXPECT_EQ(ParseFileFilter("Only a name"), (std::vector<FileFilterEntry>{{"Only a name", ""}}));
  EXPECT_TRUE(ParseFileFilter("").empty());
}

} // namespace
} // namespace vntts::ui
