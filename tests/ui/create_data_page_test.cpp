// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>

#include "audio/archive/string_list.h"
#include "fake_dialog.h"
#include "support/temp_folder.h"
#include "ui/create_data_page.h"
#include "ui/create_data_template.h"
#include "ui/text_file.h"

namespace vntts::ui {
namespace {

using namespace create_data;
using Rows = std::vector<std::u16string>;

std::string Le32(std::uint32_t a, std::uint32_t b) {
  std::string bytes;
  for (std::uint32_t v : {a, b})
    for (int i = 0; i < 4; ++i)
      bytes.push_back(static_cast<char>(v >> (8 * i)));
  return bytes;
}

class CreateDataPageTest : public ::testing::Test {
protected:
  CreateDataPageTest() {
    std::filesystem::create_directories(recordings.path() / "sub" / "inner");
    std::filesystem::create_directories(recordings.path() / "empty");
    page.OnInitDialog();
  }
  // Chooses the recordings folder (the tree's second top item) and a type.
  void List(int type) {
    view.SetCurrentIndex(kType, type);
    view.SelectTreeItem(kTree, view.Children(0).at(Utf8ToWindowText(recordings.path().string())));
    page.FillFileList();
  }
  std::vector<std::string> Keys(const std::string& arr) const {
    const std::string bytes = out.Read(arr);
    return ParseStringList({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()})
        .value_or(std::vector<std::string>{"(unreadable)"});
  }

  vntts::test::TempFolder recordings, out;
  test::FakeView view{kTemplate};
  test::FakeDesktop desktop;
  CCreateDataPage page{view, desktop, recordings.path().string()};
};

TEST_F(CreateDataPageTest, TheTreeListsFoldersOnDemandWithTheirFullPath) {
  EXPECT_EQ(view.CurrentIndex(kType), 0);
  EXPECT_FALSE(view.IsEnabled(kCreate));
  const auto top = view.Children(0);
  ASSERT_TRUE(top.count(u"/"));
  const int home = top.at(Utf8ToWindowText(recordings.path().string()));
  EXPECT_TRUE(view.tree_items.at(home).expandable);
  page.OnTreeExpanding(home);
  page.OnTreeExpanding(home); // a second opening lists nothing twice
  const auto children = view.Children(home);
  ASSERT_EQ(children.size(), 2u);
  EXPECT_FALSE(view.tree_items.at(children.at(u"empty")).expandable);
  EXPECT_TRUE(view.tree_items.at(children.at(u"sub")).expandable);
  view.SelectTreeItem(kTree, children.at(u"sub"));
  page.FillFileList();
  EXPECT_EQ(page.folder_path(), (recordings.path() / "sub").string() + "/");
  EXPECT_EQ(view.Text(kTotal), u"Total : 0 files");
  EXPECT_FALSE(view.IsEnabled(kCreate));
}

TEST_F(CreateDataPageTest, CreateWritesKeysRecordsAndDataInListOrder) {
  const std::string a = "AAAA", b = "bbbbbb", ba = "ba-data";
  recordings.Write("ba.mp3", ba);
  recordings.Write("a.mp3", a);
  recordings.Write("B.MP3", b);
  recordings.Write("note.txt", "not a recording");
  // An ID3v1 block at the end is left out; a file that is nothing but one gives 0 bytes.
  const std::string tag = "TAG" + std::string(125, 't');
  recordings.Write("c.mp3", "cc" + tag);
  recordings.Write("d.mp3", tag);
  List(0);
  EXPECT_EQ(view.Column(kList), (Rows{u"a.mp3", u"b.mp3", u"ba.mp3", u"c.mp3", u"d.mp3"}));
  EXPECT_EQ(view.Text(kTotal), u"Total : 5 files");
  EXPECT_TRUE(view.IsEnabled(kCreate));

  out.Write("Main_dic.dat", "");
  desktop.chosen = out / "Main_dic.dat";
  page.OnCreateData();
  const FileDialogRequest& r = desktop.file_requests.at(0);
  EXPECT_TRUE(r.file_must_exist);
  EXPECT_EQ(out.Read("Main_dic.dat"), a + b + ba + "cc");
  EXPECT_EQ(out.Read("Main_dic.idx"),
            Le32(0, 4) + Le32(4, 6) + Le32(10, 7) + Le32(17, 2) + Le32(19, 0));
  EXPECT_EQ(Keys("Main_dic.arr"), (std::vector<std::string>{"a", "b", "ba", "c", "d"}));
  ASSERT_EQ(desktop.shown.size(), 1u);
  EXPECT_EQ(desktop.shown[0].text, "Create data complete.");
  EXPECT_EQ(desktop.shown[0].icon, BoxIcon::kInformation);
  EXPECT_EQ(view.CurrentRow(kList), 4) << "the last entry is left selected";
}

TEST_F(CreateDataPageTest, AllFilesCutsFourCharactersAndCompanionsComeFromTheLastThree) {
  recordings.Write("x.mpeg", "xx");
  List(2);
  EXPECT_EQ(view.Column(kList), (Rows{u".", u"..", u"empty", u"sub", u"x.mpeg"}));
  // "." and ".." and the folders cannot be mapped; only x.mpeg goes to the archive here.
  view.RemoveRow(kList, 0);
  view.RemoveRow(kList, 0);
  view.RemoveRow(kList, 0);
  view.RemoveRow(kList, 0);
  out.Write("voice.data", "");
  desktop.chosen = out / "voice.data";
  page.OnCreateData();
  EXPECT_EQ(out.Read("voice.data"), "xx");
  EXPECT_EQ(out.Read("voice.didx"), Le32(0, 2));
  EXPECT_EQ(Keys("voice.darr"), std::vector<std::string>{"x."});
}

TEST_F(CreateDataPageTest, ARecordingThatCannotBeMappedEndsTheProcessWithStatusOne) {
  recordings.Write("a.mp3", "aa");
  recordings.Write("b.mp3", ""); // an empty file cannot be mapped
  List(0);
  out.Write("Main_dic.dat", "");
  desktop.chosen = out / "Main_dic.dat";
  EXPECT_EXIT(page.OnCreateData(), ::testing::ExitedWithCode(1), "");
  // The writer renames its files over the old ones only at the end: what was there stays.
  EXPECT_EQ(out.Read("Main_dic.dat"), "");
  EXPECT_FALSE(std::filesystem::exists(out / "Main_dic.idx"));
}

TEST_F(CreateDataPageTest, AnEmptyListOrACancelledDialogWritesNothing) {
  page.OnCreateData();
  ASSERT_EQ(desktop.shown.size(), 1u);
  EXPECT_EQ(desktop.shown[0].text, "No file in listbox");
  EXPECT_TRUE(desktop.file_requests.empty());
  recordings.Write("a.mp3", "aa");
  List(0);
  page.OnCreateData(); // cancelled
  EXPECT_TRUE(std::filesystem::is_empty(out.path()));
  EXPECT_EQ(desktop.shown.size(), 1u);
}

TEST_F(CreateDataPageTest, TheHiddenButtonsAddNamesWithAnMp3Ending) {
  recordings.Write("Ba.mp3", "");
  recordings.Write("a.mp3", "");
  desktop.chosen = recordings.path().string();
  page.OnAddFolder();
  EXPECT_EQ(desktop.folder_titles, std::vector<std::string>{"Please select a folder"});
  EXPECT_EQ(view.Column(kList), (Rows{u"a.mp3", u"ba.mp3"}));
  // Add Files keeps the list and adds the set again, each chosen path as the dialog gave it.
  desktop.chosen_files = {"/music/c.mp3"};
  page.OnAddFiles();
  EXPECT_EQ(view.Column(kList),
            (Rows{u"a.mp3", u"ba.mp3", u"/music/c.mp3.mp3", u"a.mp3", u"ba.mp3"}));
}

} // namespace
} // namespace vntts::ui
