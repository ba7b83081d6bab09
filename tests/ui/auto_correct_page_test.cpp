// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "fake_dialog.h"
#include "store/auto_correct_file.h"
#include "support/temp_folder.h"
#include "ui/auto_correct_page.h"
#include "ui/auto_correct_template.h"

namespace vntts::ui {
namespace {

using namespace auto_correct;
using Rows = std::vector<std::u16string>;

class AutoCorrectPageTest : public ::testing::Test {
protected:
  AutoCorrectPageTest() {
    // Typing into an edit box announces the change, as the window does.
    view.on_text_changed = [this](int id) {
      if (id == kReplace) page.OnReplaceChanged();
      if (id == kWith) page.OnWithChanged();
    };
    page.OnInitDialog();
  }
  void AddPair(std::u16string_view replace, std::u16string_view with) {
    view.SetText(kReplace, replace);
    view.SetText(kWith, with);
    page.OnAdd();
  }
  std::vector<std::uint8_t> FileBytes(const std::string& name) const {
    const std::string bytes = folder.Read(name);
    return {bytes.begin(), bytes.end()};
  }

  vntts::test::TempFolder folder;
  test::FakeView view{kTemplate};
  test::FakeDesktop desktop;
  CAutoCorrectPage page{view, desktop, "/data/index"};
};

TEST_F(AutoCorrectPageTest, TheAddCaptionSaysWhetherTheReplaceIsListed) {
  EXPECT_FALSE(view.IsEnabled(kAdd));
  AddPair(u"ko", u"không");
  EXPECT_EQ(view.Column(kList, 1), Rows{u"không"});
  EXPECT_EQ(view.Text(kAdd), u"&Replace");
  EXPECT_TRUE(view.IsEnabled(kDelete) && view.IsEnabled(kSave));
  EXPECT_EQ(page.changed, 1);

  // A Replace already listed, then a With: the caption turns to "&Replace" and Add overwrites.
  view.SetText(kReplace, u"vn");
  EXPECT_EQ(view.Text(kAdd), u"&Add");
  EXPECT_EQ(page.changed, 0) << "a new Replace text clears the flag";
  view.SetText(kReplace, u"ko");
  EXPECT_EQ(view.Text(kAdd), u"&Replace");
  view.SetText(kWith, u"không có");
  page.OnAdd();
  EXPECT_EQ(view.Column(kList, 1), Rows{u"không có"});
  // Case counts, as it does for the engine: Ko is a pair of its own.
  AddPair(u"Ko", u"Không");
  EXPECT_EQ(view.Column(kList), (Rows{u"ko", u"Ko"}));
  view.SetText(kWith, u"");
  EXPECT_FALSE(view.IsEnabled(kAdd));
  // A row chosen in the list fills the edits.
  view.SetText(kReplace, u"x");
  page.OnItemChanged(0);
  EXPECT_EQ(view.Text(kReplace), u"ko");
  EXPECT_EQ(view.Text(kWith), u"không có");
  EXPECT_EQ(view.Text(kAdd), u"&Replace");
}

TEST_F(AutoCorrectPageTest, DeletingTheLastRowDisablesSaveAndDeleteAndShowsAdd) {
  AddPair(u"a", u"1");
  AddPair(u"b", u"2");
  view.SetCurrentRow(kList, 0);
  page.OnDelete();
  EXPECT_EQ(view.Column(kList), Rows{u"b"});
  EXPECT_EQ(view.focus, kList);
  EXPECT_EQ(view.CurrentRow(kList), 0) << "the mark stays at the deleted row's place";
  EXPECT_TRUE(view.IsEnabled(kSave));
  page.changed = 0;
  page.OnDelete();
  EXPECT_TRUE(view.Column(kList).empty());
  EXPECT_EQ(page.changed, 1);
  EXPECT_FALSE(view.IsEnabled(kSave));
  EXPECT_FALSE(view.IsEnabled(kDelete));
  EXPECT_EQ(view.Text(kAdd), u"&Add");
}

TEST_F(AutoCorrectPageTest, LoadingShowsTheFileInReverseSoASaveReversesIt) {
  AddPair(u"a", u"một");
  AddPair(u"b", u"hai");
  AddPair(u"c", u"ba");
  desktop.chosen = folder / "pairs.crt";
  page.OnSave();
  const std::vector<AutoCorrectPair> in_order{{"a", "mo\xE4t"}, {"b", "hai"}, {"c", "ba"}};
  EXPECT_EQ(FileBytes("pairs.crt"), SerializeAutoCorrectFile(in_order));

  view.RemoveAllRows(kList);
  page.changed = 0;
  page.OnLoad();
  EXPECT_EQ(view.Column(kList), (Rows{u"c", u"b", u"a"}));
  EXPECT_EQ(view.Column(kList, 1), (Rows{u"ba", u"hai", u"một"}));
  EXPECT_EQ(page.changed, 1);
  EXPECT_TRUE(view.IsEnabled(kSave) && view.IsEnabled(kDelete));
  desktop.chosen = folder / "again.crt";
  page.OnSave();
  EXPECT_EQ(FileBytes("again.crt"), SerializeAutoCorrectFile(std::vector<AutoCorrectPair>(
                                        in_order.rbegin(), in_order.rend())));

  ASSERT_EQ(desktop.file_requests.size(), 3u);
  for (const FileDialogRequest& r : desktop.file_requests) {
    EXPECT_EQ(r.folder, "/data/index");
  }
}

TEST_F(AutoCorrectPageTest, FileErrorsAreShownInTheirOwnWordsAndLeaveTheList) {
  AddPair(u"a", u"1");
  folder.Write("short.crt", "\x05");
  for (const char* bad : {"missing.crt", "short.crt"}) {
    desktop.chosen = folder / bad;
    page.OnLoad();
  }
  desktop.chosen = folder / "no/such/folder/x.crt";
  page.OnSave();
  ASSERT_EQ(desktop.shown.size(), 3u);
  for (const auto& shown : desktop.shown) {
    EXPECT_EQ(shown.icon, BoxIcon::kError);
    EXPECT_NE(shown.text.find(folder.path().string()), std::string::npos) << shown.text;
  }
  EXPECT_EQ(view.Column(kList), Rows{u"a"});
  desktop.chosen.reset();
  page.OnLoad(); // cancelled: nothing happens
  EXPECT_EQ(desktop.shown.size(), 3u);
}

} // namespace
} // namespace vntts::ui
