// SPDX-License-Identifier: MIT
#pragma once
// Fakes for driving the dialogs' logic without windows: a view that keeps each control's state
// as a template built it, a desktop that answers from a script and remembers what it was asked,
// and engines that log their calls.
#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "ui/desktop.h"
#include "ui/dialog_engine.h"
#include "ui/dialog_template.h"
#include "ui/dialog_view.h"

namespace vntts::ui::test {

class FakeView final : public DialogView {
public:
  struct Control {
    bool enabled = true;
    bool checked = false;
    std::u16string text;
    TextSelection selection;
    int minimum = 0, maximum = 100, position = 0; // a trackbar's defaults
    std::vector<std::pair<std::u16string, std::uint32_t>> items;
    int index = -1;
  };

  explicit FakeView(const DialogTemplate& t) {
    for (const ControlTemplate& c : t.controls) {
      if (c.id == kStaticId) continue;
      controls[c.id].enabled = !(c.styles & kDisabled);
      controls[c.id].text = std::u16string(c.text.begin(), c.text.end());
    }
  }

  void Enable(int id, bool enabled) override { At(id).enabled = enabled; }
  bool IsEnabled(int id) const override { return At(id).enabled; }
  std::u16string Text(int id) const override { return At(id).text; }
  void SetText(int id, std::u16string_view text) override { At(id).text = text; }
  bool IsChecked(int id) const override { return At(id).checked; }
  void SetChecked(int id, bool checked) override { At(id).checked = checked; }
  TextSelection Selection(int id) const override { return At(id).selection; }
  void Select(int id, TextSelection s) override {
    At(id).selection = s;
    selections.push_back(s);
  }
  void SetRange(int id, int minimum, int maximum) override {
    Control& c = At(id);
    c.minimum = minimum;
    c.maximum = maximum;
    c.position = std::clamp(c.position, minimum, maximum);
  }
  int Minimum(int id) const override { return At(id).minimum; }
  int Maximum(int id) const override { return At(id).maximum; }
  int Position(int id) const override { return At(id).position; }
  void SetPosition(int id, int position) override {
    Control& c = At(id);
    c.position = std::clamp(position, c.minimum, c.maximum);
  }
  void AddItem(int id, std::u16string_view text, std::uint32_t data) override {
    At(id).items.emplace_back(text, data);
  }
  int CurrentIndex(int id) const override { return At(id).index; }
  void SetCurrentIndex(int id, int index) override { At(id).index = index; }
  std::optional<std::uint32_t> CurrentData(int id) const override {
    const Control& c = At(id);
    if (c.index < 0 || c.index >= static_cast<int>(c.items.size())) return std::nullopt;
    return c.items[static_cast<std::size_t>(c.index)].second;
  }
  void StartTimer(int timer_id, int milliseconds) override { timers[timer_id] = milliseconds; }
  void KillTimer(int timer_id) override { timers.erase(timer_id); }
  void EndDialog(int result) override { ended = result; }

  Control& At(int id) { return controls.at(id); }
  const Control& At(int id) const { return controls.at(id); }

  std::map<int, Control> controls;
  std::map<int, int> timers; // running timers and their periods
  std::vector<TextSelection> selections;
  std::optional<int> ended;
};

class FakeDesktop final : public Desktop {
public:
  struct Shown {
    std::string text, caption;
    BoxIcon icon;
    BoxButtons buttons;
  };

  BoxAnswer ShowMessage(std::string_view text, std::string_view caption, BoxIcon icon,
                        BoxButtons buttons) override {
    shown.push_back({std::string(text), std::string(caption), icon, buttons});
    return answers.empty() ? BoxAnswer::Ok : Next(answers);
  }
  std::optional<std::string> ChooseFileToOpen(const FileDialogRequest& r) override {
    return Choose(r);
  }
  std::optional<std::string> ChooseFileToSave(const FileDialogRequest& r) override {
    return Choose(r);
  }
  std::string CurrentDirectory() override { return directory; }
  bool SetCurrentDirectory(const std::string& path) override {
    directory_sets.push_back(path);
    return true;
  }
  std::optional<FileBytes> ReadFile(const std::string& path) override {
    const auto found = files.find(path);
    if (found == files.end()) return std::nullopt;
    return found->second;
  }
  std::uint32_t TickCount() override { return now; }

  std::deque<BoxAnswer> answers;
  std::optional<std::string> chosen; // what every file dialog returns
  std::vector<FileDialogRequest> file_requests;
  std::vector<Shown> shown;
  std::string directory = "/home/user";
  std::vector<std::string> directory_sets;
  std::map<std::string, FileBytes> files;
  std::uint32_t now = 1000;

private:
  template <class T> static T Next(std::deque<T>& q) {
    T value = q.front();
    q.pop_front();
    return value;
  }
  std::optional<std::string> Choose(const FileDialogRequest& r) {
    file_requests.push_back(r);
    return chosen;
  }
};

// Logs every call as text ("volume 0x80008000"), in order.
class FakeSpeakerEngine final : public SpeakerEngine {
public:
  void ResetToDefaults() override {
    calls.push_back("reset");
    format = {1, 11025, 8};
  }
  OutputFormat Format() override { return format; }
  int SetFormatCode(std::uint32_t code) override {
    calls.push_back("format " + std::to_string(code));
    return code >= 8 && code <= 35 ? 1 : 0;
  }
  void SetVolume(std::uint32_t v) override { calls.push_back("volume " + Hex(v)); }
  bool PitchSupported() override { return pitch_supported; }
  std::uint32_t Pitch() override { return pitch; }
  void SetPitch(std::uint32_t p) override { calls.push_back("pitch " + Hex(p)); }
  void SetSlowness(std::uint32_t s) override { calls.push_back("slowness " + std::to_string(s)); }
  void Speak(std::string text, std::uint32_t base, std::uint32_t speech,
             std::shared_ptr<SpeechListener> l) override {
    calls.push_back("speak " + std::to_string(base));
    spoken = std::move(text);
    speech_id = speech;
    listener = std::move(l);
  }
  bool Pause() override { return Log("pause", accept_pause); }
  bool Resume() override { return Log("resume", accept_resume); }
  bool Stop() override { return Log("stop", accept_stop); }
  void Detach() override { calls.push_back("detach"); }

  static std::string Hex(std::uint32_t v) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", v);
    return text;
  }
  bool Called(const std::string& call) const {
    return std::find(calls.begin(), calls.end(), call) != calls.end();
  }

  std::vector<std::string> calls;
  OutputFormat format{2, 22050, 16};
  bool pitch_supported = false;
  std::uint32_t pitch = 0;
  bool accept_pause = true, accept_resume = true, accept_stop = true;
  std::string spoken;
  std::uint32_t speech_id = 0;
  std::shared_ptr<SpeechListener> listener;

private:
  bool Log(const char* call, bool result) {
    calls.push_back(call);
    return result;
  }
};

class FakeRecorder final : public RecorderEngine {
public:
  int Start() override { return Log("start", start_result); }
  int Pause() override { return Log("pause", pause_result); }
  int Resume() override { return Log("resume", resume_result); }
  int Stop() override { return Log("stop", stop_result); }
  int Save(const std::string& path) override { return Log("save " + path, 0); }
  void Close() override { calls.push_back("close"); }

  std::vector<std::string> calls;
  int start_result = 0, pause_result = 0, resume_result = 0, stop_result = 0;

private:
  int Log(const std::string& call, int result) {
    calls.push_back(call);
    return result;
  }
};

} // namespace vntts::ui::test
