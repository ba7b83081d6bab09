// SPDX-License-Identifier: MIT
// The window exports where no window can be shown: they say why and return their failure value.
#include <filesystem>

#include "library_fixture.h"

namespace vntts::test {
namespace {

class WindowExportsTest : public LibraryTest {
protected:
  void ExpectAllRefused(const std::string& said) {
    GetVolume(); // the engine first: what it says about the voice is not the windows' concern
    ClearShown();
    EXPECT_EQ(SpeakDlg(0, "Xin chao"), 0);
    EXPECT_EQ(::Record(0), 0);
    EXPECT_EQ(RecordToFile("take.wav", 0), 0);
    EXPECT_EQ(::Tools(0), 0);
    EditDefinition(0);
    const auto shown = Shown();
    ASSERT_EQ(shown.size(), 5u) << ::testing::PrintToString(shown);
    for (const ShownMessage& m : shown) {
      EXPECT_EQ(m.text.substr(0, said.size()), said);
      EXPECT_EQ(m.icon, VN_MESSAGE_ERROR);
    }
  }
};

TEST_F(WindowExportsTest, WithoutTheWindowModuleTheyFail) {
  setenv("VNTTS_UI_MODULE", "/no/such/folder/libvntts-ui.so", 1);
  ExpectAllRefused("The window module could not be loaded: ");
  unsetenv("VNTTS_UI_MODULE");
}

TEST_F(WindowExportsTest, WithoutADisplayTheyFail) {
  if (!std::filesystem::exists(VNTTS_BINARY_DIR "/bin/libvntts-ui.so"))
    GTEST_SKIP() << "the window module is not built";
  unsetenv("QT_QPA_PLATFORM");
  unsetenv("WAYLAND_DISPLAY");
  unsetenv("DISPLAY");
  ExpectAllRefused("No display to show the window on (DISPLAY is not set).");
  // A display that does not answer is no display either.
  setenv("DISPLAY", ":97", 1);
  ExpectAllRefused("No display to show the window on (cannot connect to DISPLAY :97).");
  unsetenv("DISPLAY");
}

} // namespace
} // namespace vntts::test
