// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "fake_dialog.h"
#include "store/phrase_store.h"
#include "support/temp_folder.h"
#include "support/tsv_table.h"
#include "text/charset/charsets.h"
#include "ui/phrase_express_page.h"
#include "ui/phrase_express_template.h"
#include "ui/text_file.h"

namespace vntts::ui {
namespace {

using namespace phrase_express;
using Rows = std::vector<std::u16string>;

std::string Unescape(std::string text) {
  for (const auto& [from, to] : {std::pair{"\\r", "\r"}, std::pair{"\\n", "\n"}})
    for (std::size_t at; (at = text.find(from)) != std::string::npos;)
      text.replace(at, 2, to);
  return text;
}

Rows SplitRows(const std::string& joined) {
  Rows rows;
  for (const std::string& row : vntts::test::SplitField(joined, '|'))
    rows.push_back(Utf8ToWindowText(row));
  return rows;
}

class PhraseExpressPageTest : public ::testing::Test {
protected:
  PhraseExpressPageTest() {
    view.on_text_changed = [this](int id) {
      if (id == kEdit) page.OnEditChanged();
    };
    page.OnInitDialog();
  }
  void Add(std::string_view utf8) {
    view.SetText(kEdit, Utf8ToWindowText(utf8));
    page.OnAdd();
  }
  // The list and the page's set must agree entry for entry.
  Rows List() const {
    Rows rows = view.Column(kList);
    EXPECT_EQ(rows.size(), page.phrases().Count());
    for (std::size_t i = 0; i < rows.size() && i < page.phrases().Count(); ++i)
      EXPECT_EQ(rows[i], InternalToWindowText(page.phrases().At(i)));
    return rows;
  }

  vntts::test::TempFolder folder;
  test::FakeView view{kTemplate};
  test::FakeDesktop desktop;
  CPhraseExpressPage page{view, desktop};
};

class PhraseExpressAddTable : public PhraseExpressPageTest,
                              public ::testing::WithParamInterface<vntts::test::TsvRow> {};

TEST_P(PhraseExpressAddTable, CollectsTheTwoWordPhrases) {
  const auto& row = GetParam();
  const std::string text = Unescape(row[1]);
  for (int round = 0; round < 2; ++round) {
    Add(text);
    EXPECT_EQ(List(), SplitRows(row[2])) << "round " << round << ", line " << row.line;
  }
  // The completion message comes every time, a text without phrases included.
  ASSERT_EQ(desktop.shown.size(), 2u);
  EXPECT_EQ(desktop.shown[0].text, "Create Phrase Express Complete.");
  EXPECT_EQ(desktop.shown[0].icon, BoxIcon::kInformation);
  const bool any = !row[2].empty();
  EXPECT_EQ(view.IsEnabled(kDelete), any);
  EXPECT_EQ(view.IsEnabled(kDeleteAll), any);
  EXPECT_EQ(view.IsEnabled(kCreate), any);
}

INSTANTIATE_TEST_SUITE_P(Table, PhraseExpressAddTable,
                         ::testing::ValuesIn(vntts::test::ReadTsv("phrase_express_add")),
                         [](const auto& row) { return vntts::test::TsvName(row.param); });

TEST_F(PhraseExpressPageTest, AStopRequestedDuringAddEndsItAfterTheCurrentPhrase) {
  int turns = 0;
  desktop.on_events = [&] {
    if (++turns == 2) page.RequestStop();
  };
  Add("a b, c d, e f, g h");
  EXPECT_EQ(List(), (Rows{u"a b", u"c d"}));
  EXPECT_EQ(desktop.shown.size(), 1u) << "the completion message still comes";
}

TEST_F(PhraseExpressPageTest, DeleteRemovesTheSelectionFromListAndSetAlike) {
  Add("a b, c d, e f, g h");
  view.At(kList).selected = {0, 2};
  page.OnDelete();
  EXPECT_EQ(List(), (Rows{u"c d", u"g h"}));
  EXPECT_EQ(view.focus, kEdit);
  EXPECT_EQ(view.SelectedRows(kList), std::vector<int>{1});
  view.At(kList).selected = {0, 1};
  page.OnDelete();
  EXPECT_TRUE(List().empty());
  EXPECT_FALSE(view.IsEnabled(kDelete) || view.IsEnabled(kDeleteAll) || view.IsEnabled(kCreate));

  Add("a b, c d");
  page.OnDeleteAll();
  EXPECT_TRUE(List().empty());
  EXPECT_FALSE(view.IsEnabled(kDelete) || view.IsEnabled(kDeleteAll) || view.IsEnabled(kCreate));
  Add("c d");
  EXPECT_EQ(List(), Rows{u"c d"}) << "the set was emptied with the list";
}

TEST_F(PhraseExpressPageTest, FindSelectsThePhraseOrQuotesTheTextItMissed) {
  Add("a b, c d, e f");
  view.SetText(kEdit, u"c d");
  page.OnFind();
  EXPECT_EQ(view.SelectedRows(kList), std::vector<int>{1});
  view.SetText(kEdit, u"xin chào");
  page.OnFind();
  ASSERT_EQ(desktop.shown.size(), 2u);
  EXPECT_EQ(desktop.shown[1].text, "Khong tim thay tu  \"xin chào\"");
}

TEST_F(PhraseExpressPageTest, CreateWritesAPhraseStoreOrTextLinesAndLoadReadsThemBack) {
  Add("Hà Nội, Sài Gòn, an uống");
  desktop.chosen = folder / "Data.dic";
  page.OnCreate();
  PhraseStore store;
  ASSERT_TRUE(store.Open(folder / "Data.dic"));
  EXPECT_EQ(store.AllPhrases(), (std::vector<std::string>(page.phrases().Names().begin(),
                                                          page.phrases().Names().end())));
  EXPECT_TRUE(store.IsPhrase(Utf8ToInternal("Hà"), Utf8ToInternal("Nội")));
  desktop.chosen = folder / "phrases.txt";
  page.OnCreate();
  EXPECT_EQ(folder.Read("phrases.txt"), "Hà Nội\r\nSài Gòn\r\nan uống\r\n");

  const Rows created = List();
  for (const char* file : {"Data.dic", "phrases.txt"}) {
    page.OnDeleteAll();
    desktop.chosen = folder / file;
    page.OnLoad();
    EXPECT_EQ(List(), created) << file;
    EXPECT_TRUE(view.IsEnabled(kDelete) && view.IsEnabled(kDeleteAll));
  }
}

TEST_F(PhraseExpressPageTest, OpenAndSaveCarryTheEditsTextAndFileErrorsShowTheStopIcon) {
  EXPECT_FALSE(view.IsEnabled(kAdd) || view.IsEnabled(kSave)) << "until the edit has text";
  folder.Write("in.txt", "xin chào\r\nthế giới");
  desktop.chosen = folder / "in.txt";
  page.OnOpen();
  EXPECT_EQ(view.Text(kEdit), u"xin chào\r\nthế giới");
  EXPECT_TRUE(view.IsEnabled(kAdd) && view.IsEnabled(kSave));
  desktop.chosen = folder / "out.txt";
  page.OnSave();
  EXPECT_EQ(folder.Read("out.txt"), "xin chào\r\nthế giới");

  Add("a b");
  desktop.shown.clear();
  desktop.chosen = folder / "no/such/Data.dic";
  page.OnCreate();
  desktop.chosen = folder / "no/such/out.txt";
  page.OnSave();
  ASSERT_EQ(desktop.shown.size(), 2u);
  for (const auto& shown : desktop.shown) {
    EXPECT_EQ(shown.icon, BoxIcon::kError);
    EXPECT_NE(shown.text.find("no/such"), std::string::npos) << shown.text;
  }
  view.SetText(kEdit, u"");
  EXPECT_FALSE(view.IsEnabled(kAdd) || view.IsEnabled(kSave));
}

} // namespace
} // namespace vntts::ui
