// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "fake_dialog.h"
#include "support/tsv_table.h"
#include "ui/record_dialog.h"
#include "ui/record_template.h"

namespace vntts::ui {
namespace {

using namespace record;
using test::FakeDesktop;
using test::FakeRecorder;
using test::FakeView;

struct ButtonStates {
  bool start, pause, stop, cancel;
  bool operator==(const ButtonStates&) const = default;
};

class RecordDialogTest : public ::testing::Test {
protected:
  ButtonStates Buttons() const {
    return {view.IsEnabled(kStart), view.IsEnabled(kPause), view.IsEnabled(kStop),
            view.IsEnabled(kCancel)};
  }
  // Lets ms pass and the timer tick once.
  void Tick(std::uint32_t ms) {
    desktop.now += ms;
    dialog.OnTimer(kTimerId);
  }

  static constexpr ButtonStates kIdle{true, false, false, true};
  static constexpr ButtonStates kRecording{false, true, true, false};

  FakeView view{kTemplate};
  FakeDesktop desktop;
  FakeRecorder recorder;
  CRecordDlg dialog{view, desktop, recorder};
};

TEST_F(RecordDialogTest, RecorderFailuresAreToldAndLeaveTheButtons) {
  dialog.OnInitDialog();
  recorder.start_result = 1;
  dialog.OnStart();
  EXPECT_EQ(Buttons(), kIdle);
  recorder.start_result = 0;
  dialog.OnStart();
  recorder.pause_result = recorder.stop_result = 1;
  dialog.OnPauseResume();
  EXPECT_EQ(view.Text(kPause), u"&Pause");
  dialog.OnStop();
  EXPECT_EQ(Buttons(), kRecording);
  recorder.pause_result = 0;
  dialog.OnPauseResume();
  recorder.resume_result = 1;
  dialog.OnPauseResume();
  EXPECT_EQ(view.Text(kPause), u"&Resume");
  std::vector<std::string> texts;
  for (const auto& shown : desktop.shown) {
    texts.push_back(shown.text);
    EXPECT_EQ(shown.buttons, BoxButtons::kOk);
  }
  EXPECT_EQ(texts, (std::vector<std::string>{"Error start record.", "Error pause record.",
                                             "Error stop record.", "Error resume record."}));
}

// The time counts recorded milliseconds, minutes unreduced; a pause is not counted, and a new
// take after Stop counts from zero again.
TEST_F(RecordDialogTest, TheTimeCountsWhatWasRecorded) {
  dialog.OnInitDialog();
  EXPECT_EQ(Buttons(), kIdle);
  EXPECT_EQ(view.Text(kTime), u"00:00:00");
  dialog.OnStart();
  EXPECT_EQ(Buttons(), kRecording);
  EXPECT_EQ(view.Text(kTime), u"0:0:0");
  Tick(61'234);
  EXPECT_EQ(view.Text(kTime), u"01:01:234 ");
  Tick(3'600'000);
  EXPECT_EQ(view.Text(kTime), u"61:01:234 ");
  // The indicator sweeps from its minimum to its maximum and starts again.
  view.SetPosition(kIndicator, 100);
  Tick(1);
  EXPECT_EQ(view.Position(kIndicator), 0);
  Tick(1);
  EXPECT_EQ(view.Position(kIndicator), 1);

  dialog.OnStop();
  EXPECT_EQ(Buttons(), kIdle);
  EXPECT_TRUE(view.timers.empty());
  dialog.OnStart();
  Tick(99);
  dialog.OnPauseResume();
  EXPECT_EQ(view.Text(kPause), u"&Resume");
  EXPECT_TRUE(view.timers.empty());
  desktop.now += 10'000;
  dialog.OnPauseResume();
  EXPECT_EQ(view.Text(kPause), u"&Pause");
  EXPECT_EQ(view.timers, (std::map<int, int>{{kTimerId, 99}}));
  Tick(99);
  EXPECT_EQ(view.Text(kTime), u"00:00:198 ");
  dialog.OnPauseResume();
  dialog.OnStop();
  EXPECT_EQ(view.Text(kPause), u"&Pause") << "Stop ends a pause";
  EXPECT_EQ(recorder.calls, (std::vector<std::string>{"start", "stop", "close", "start", "pause",
                                                      "resume", "pause", "stop"}));
}

TEST_F(RecordDialogTest, ClosingOffersToSaveATake) {
  for (const auto& row : vntts::test::ReadTsv("record_close")) {
    SCOPED_TRACE("line " + std::to_string(row.line));
    const bool recorded = row.at(1) == "1";
    view.ended.reset();
    recorder.calls.clear();
    desktop.shown.clear();
    desktop.file_requests.clear();
    desktop.answers = {row.at(2) == "yes" ? BoxAnswer::kYes : BoxAnswer::kNo};
    desktop.chosen = row.at(3).empty() ? std::nullopt : std::optional(row.at(3));
    CRecordDlg closing(view, desktop, recorder, row.at(0));
    if (recorded) {
      closing.OnStart();
      closing.OnStop();
      recorder.calls.clear();
    }
    closing.OnCancel();
    EXPECT_EQ(view.ended, kCancel);
    EXPECT_EQ(recorder.calls, vntts::test::SplitField(row.at(4), ';'));
    EXPECT_EQ(closing.file_name(), row.at(5));
    EXPECT_EQ(closing.saved(), row.at(6) == "1");
    ASSERT_EQ(desktop.shown.size(), recorded ? 1u : 0u);
    if (!recorded) continue;
    EXPECT_EQ(desktop.shown[0].text, "Would you like to save record to file ?");
    EXPECT_EQ(desktop.shown[0].buttons, BoxButtons::kYesNo);
    EXPECT_EQ(desktop.file_requests.size(), row.at(2) == "yes" ? 1u : 0u);
  }
}

} // namespace
} // namespace vntts::ui
