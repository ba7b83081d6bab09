// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "fake_dialog.h"
#include "text/charset/charsets.h"
#include "ui/definition_dialog.h"
#include "ui/definition_template.h"
#include "ui/text_file.h"

namespace vntts::ui {
namespace {

using namespace definition;
using Rows = std::vector<std::u16string>;

class DefinitionDialogTest : public ::testing::Test {
protected:
  void Open() { dialog.OnInitDialog(); }
  void Add(std::u16string_view replace, std::u16string_view with) {
    view.SetText(kReplace, replace);
    view.SetText(kWith, with);
    dialog.OnAdd();
  }

  test::FakeView view{kTemplate};
  test::FakeDesktop desktop;
  test::FakeTools engine;
  test::FakeDefinitions& store = engine.definitions;
  CDefinitionDlg dialog{view, desktop, engine};
};

TEST_F(DefinitionDialogTest, LoadingSkipsTheFirstTwoEntriesAndLinesWithoutATab) {
  // Whatever the first two entries are called, they are passed over unread.
  store.entries = {"a.def", "b.def", "c.def", "sub"};
  store.files = {
      {"a.def", "aa\tnever\n"},
      {"b.def", "bb\tnever\n"},
      {"c.def", "tp\tth\xE0nh ph\xF4\r\nno tab here\n\tempty short\nvn\tVi\xEA\xE4t\tNam"}};
  Open();
  EXPECT_EQ(store.read, (std::vector<std::string>{"c.def", "sub"}));
  EXPECT_EQ(view.Column(kList), (Rows{u"TP", u"", u"VN"}));
  EXPECT_EQ(view.Cell(kList, 2, 1), InternalToWindowText("Vi\xEA\xE4t\tNam"))
      << "split at the first tab only";
  EXPECT_TRUE(desktop.shown.empty());
}

TEST_F(DefinitionDialogTest, AddingAShortFormAlreadyListedAsksBeforeItOverrides) {
  store.stored = {{"ko", "kh\xF4ng"}};
  store.entries = {".", "..", "user.def"};
  store.files = {{"user.def", "KO\tkh\xF4ng\n"}};
  Open();
  desktop.answers = {BoxAnswer::kNo, BoxAnswer::kYes};
  Add(u"ko", u"không có");
  EXPECT_EQ(desktop.shown.at(0).text, "Override ?");
  EXPECT_EQ(desktop.shown.at(0).buttons, BoxButtons::kYesNo);
  EXPECT_EQ(view.Text(kReplace), u"") << "the edits are emptied either way";
  EXPECT_EQ(store.stored, (std::vector<Definition>{{"ko", "kh\xF4ng"}}));
  EXPECT_EQ(view.Column(kList), Rows{u"KO"});

  Add(u"Ko", u"không có");
  EXPECT_EQ(view.Column(kList), Rows{u"KO"});
  EXPECT_EQ(view.Column(kList, 1), Rows{u"không có"});
  EXPECT_EQ(store.stored, (std::vector<Definition>{{"ko", Utf8ToInternal("không có")}}))
      << "the short form is stored lower-cased";

  Add(u"đt", u"điện thoại");
  EXPECT_EQ(view.Column(kList), (Rows{u"KO", u"ĐT"}));
  EXPECT_EQ(desktop.shown.size(), 2u) << "a new short form is not asked about";
}

TEST_F(DefinitionDialogTest, RemoveClickAndTestActOnTheMarkedRow) {
  Open();
  Add(u"tp", u"thành phố");
  Add(u"vn", u"Việt Nam");
  dialog.OnTest();
  EXPECT_EQ(desktop.shown.back().text, "Please select a Definition!");
  EXPECT_TRUE(engine.spoken.empty());

  view.SetCurrentRow(kList, 1);
  dialog.OnClick(1);
  EXPECT_EQ(view.Text(kReplace), u"VN");
  EXPECT_EQ(view.Text(kWith), u"Việt Nam");
  dialog.OnTest();
  EXPECT_EQ(engine.spoken, std::vector<std::string>{"VN"});

  view.SetCurrentRow(kList, 0);
  dialog.OnRemove();
  EXPECT_EQ(view.Column(kList), Rows{u"VN"});
  EXPECT_EQ(store.stored.size(), 1u);
  // A row the store does not know stays listed.
  store.stored.clear();
  view.SetCurrentRow(kList, 0);
  dialog.OnRemove();
  EXPECT_EQ(view.Column(kList), Rows{u"VN"});
}

TEST_F(DefinitionDialogTest, ListFailuresAreReportedInTheirOwnWords) {
  store.entries = {".", "..", "d"};
  store.files = {{"d", "a\tb\n"}};
  view.refuse_cells = true;
  Open();
  view.refuse_cells = false;
  view.refuse_rows = true;
  Add(u"c", u"d");
  std::vector<std::string> texts;
  for (const auto& shown : desktop.shown)
    texts.push_back(shown.text);
  EXPECT_EQ(texts, (std::vector<std::string>{"Can not insert this Definition!", "Cu chuoi",
                                             "Can not insert this Definition!"}));
}

} // namespace
} // namespace vntts::ui
