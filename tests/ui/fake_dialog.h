// SPDX-License-Identifier: MIT
#pragma once
// Fakes for driving the dialogs' logic without windows: a view that keeps each control's state
// as a template built it, a desktop that answers from a script and remembers what it was asked,
// and engines that log their calls.
#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "store/definition_store.h"
#include "text/char_classes.h"
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
    // Lists: rows of cells, the selection and the focus mark.
    std::vector<std::vector<std::u16string>> rows;
    std::set<int> selected;
    int current = -1;
  };
  struct TreeItem {
    int parent;
    std::u16string text;
    bool expandable;
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
  // As in the window, setting a text announces a change (the tests listen to their edit boxes).
  void SetText(int id, std::u16string_view text) override {
    At(id).text = text;
    if (on_text_changed) on_text_changed(id);
  }
  bool IsChecked(int id) const override { return At(id).checked; }
  void SetChecked(int id, bool checked) override { At(id).checked = checked; }
  TextSelection Selection(int id) const override { return At(id).selection; }
  void Select(int id, TextSelection s) override { At(id).selection = s; }
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

  void SetTextLimit(int, int) override {}
  void SetFocus(int id) override { focus = id; }
  void Repaint() override {}
  void InsertColumn(int, int, std::u16string_view, int) override {}
  int InsertRow(int id, int row, std::u16string_view text) override {
    Control& c = At(id);
    if (refuse_rows) return -1;
    row = std::clamp(row, 0, static_cast<int>(c.rows.size()));
    c.rows.insert(c.rows.begin() + row, {std::u16string(text)});
    Shift(c, row, +1);
    return row;
  }
  bool SetCell(int id, int row, int column, std::u16string_view text) override {
    Control& c = At(id);
    if (refuse_cells || row < 0 || row >= RowCount(id) || column < 0) return false;
    auto& cells = c.rows[static_cast<std::size_t>(row)];
    if (cells.size() <= static_cast<std::size_t>(column)) cells.resize(column + 1);
    cells[static_cast<std::size_t>(column)] = text;
    return true;
  }
  std::u16string Cell(int id, int row, int column) const override {
    const Control& c = At(id);
    if (row < 0 || row >= RowCount(id)) return {};
    const auto& cells = c.rows[static_cast<std::size_t>(row)];
    return static_cast<std::size_t>(column) < cells.size() ? cells[column] : std::u16string();
  }
  int RowCount(int id) const override { return static_cast<int>(At(id).rows.size()); }
  void RemoveRow(int id, int row) override {
    Control& c = At(id);
    if (row < 0 || row >= RowCount(id)) return;
    c.rows.erase(c.rows.begin() + row);
    c.selected.erase(row);
    if (c.current == row) c.current = -1;
    Shift(c, row + 1, -1);
  }
  void RemoveAllRows(int id) override {
    Control& c = At(id);
    c.rows.clear();
    c.selected.clear();
    c.current = -1;
  }
  std::vector<int> SelectedRows(int id) const override {
    const auto& s = At(id).selected;
    return {s.begin(), s.end()};
  }
  int CurrentRow(int id) const override {
    const Control& c = At(id);
    return c.selected.count(c.current) ? c.current : -1;
  }
  void SetCurrentRow(int id, int row) override {
    Control& c = At(id);
    c.selected.clear();
    c.current = row >= 0 && row < RowCount(id) ? row : -1;
    if (c.current >= 0) c.selected.insert(row);
  }

  int InsertTreeItem(int, int parent, std::u16string_view text, bool expandable) override {
    const int item = static_cast<int>(tree_items.size()) + 1;
    tree_items[item] = {parent, std::u16string(text), expandable};
    return item;
  }
  void SetTreeItemExpandable(int, int item, bool expandable) override {
    tree_items.at(item).expandable = expandable;
  }
  int SelectedTreeItem(int) const override { return selected_item; }
  void SelectTreeItem(int, int item) override { selected_item = item; }

  // The texts of a list's column, in order.
  std::vector<std::u16string> Column(int id, int column = 0) const {
    std::vector<std::u16string> texts;
    for (int row = 0; row < RowCount(id); ++row)
      texts.push_back(Cell(id, row, column));
    return texts;
  }
  // The tree's items under parent, by text.
  std::map<std::u16string, int> Children(int parent) const {
    std::map<std::u16string, int> children;
    for (const auto& [item, i] : tree_items)
      if (i.parent == parent) children[i.text] = item;
    return children;
  }

  Control& At(int id) { return controls.at(id); }
  const Control& At(int id) const { return controls.at(id); }

  std::map<int, Control> controls;
  std::function<void(int id)> on_text_changed;
  bool refuse_rows = false, refuse_cells = false;
  int focus = 0;
  std::map<int, TreeItem> tree_items;
  int selected_item = 0;
  std::map<int, int> timers; // running timers and their periods
  std::optional<int> ended;

private:
  // Selected rows and the focus mark move with the rows at and after `from`.
  static void Shift(Control& c, int from, int by) {
    std::set<int> moved;
    for (int row : c.selected)
      moved.insert(row >= from ? row + by : row);
    c.selected = std::move(moved);
    if (c.current >= from) c.current += by;
  }
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
    if (answers.empty()) return BoxAnswer::kOk;
    const BoxAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  }
  std::optional<std::string> ChooseFileToOpen(const FileDialogRequest& r) override {
    file_requests.push_back(r);
    return chosen;
  }
  std::optional<std::string> ChooseFileToSave(const FileDialogRequest& r) override {
    return ChooseFileToOpen(r);
  }
  std::vector<std::string> ChooseFilesToOpen(const FileDialogRequest& r) override {
    file_requests.push_back(r);
    return chosen_files;
  }
  std::optional<std::string> ChooseFolder(std::string_view title) override {
    folder_titles.emplace_back(title);
    return chosen;
  }
  void ProcessPendingEvents() override {
    if (on_events) on_events();
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
  std::optional<std::string> chosen; // what every file (and folder) dialog returns
  std::vector<std::string> chosen_files;
  std::vector<FileDialogRequest> file_requests;
  std::vector<std::string> folder_titles;
  std::function<void()> on_events;
  std::vector<Shown> shown;
  std::string directory = "/home/user";
  std::vector<std::string> directory_sets;
  std::map<std::string, FileBytes> files;
  std::uint32_t now = 1000;
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
             std::shared_ptr<SpeechListener>) override {
    calls.push_back("speak " + std::to_string(base));
    spoken = std::move(text);
    speech_id = speech;
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

  std::vector<std::string> calls;
  OutputFormat format{2, 22050, 16};
  bool pitch_supported = false;
  std::uint32_t pitch = 0;
  bool accept_pause = true, accept_resume = true, accept_stop = true;
  std::string spoken;
  std::uint32_t speech_id = 0;

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

// A Define folder in memory: entries in listing order and their bytes; the store operations
// work on the definitions and note what they were asked.
class FakeDefinitions final : public DefinitionFiles {
public:
  std::vector<std::string> ListEntries() override { return entries; }
  std::optional<std::string> ReadEntry(const std::string& name) override {
    read.push_back(name);
    const auto found = files.find(name);
    if (found == files.end()) return std::nullopt;
    return found->second;
  }
  bool Contains(std::string_view short_form) override {
    return std::any_of(stored.begin(), stored.end(), [&](const Definition& d) {
      return EqualsIgnoreCase(d.short_form, short_form);
    });
  }
  StoreResult Append(std::string_view short_form, std::string_view expansion) override {
    if (short_form.empty()) return StoreResult::Failure("empty short form");
    stored.push_back({std::string(short_form), std::string(expansion)});
    return StoreResult::Success();
  }
  StoreResult Remove(std::string_view short_form) override {
    const auto removed = std::erase_if(
        stored, [&](const Definition& d) { return EqualsIgnoreCase(d.short_form, short_form); });
    return removed ? StoreResult::Success() : StoreResult::Failure({});
  }

  std::vector<std::string> entries{".", ".."};
  std::map<std::string, std::string> files;
  std::vector<std::string> read;
  std::vector<Definition> stored;
};

class FakeTools final : public ToolsEngine {
public:
  std::string DataFolder() override { return folder; }
  DefinitionFiles& Definitions() override { return definitions; }
  void Speak(std::string internal_text) override { spoken.push_back(std::move(internal_text)); }
  void ReloadAutoCorrect() override {}

  std::string folder = "/data/index";
  FakeDefinitions definitions;
  std::vector<std::string> spoken;
};

} // namespace vntts::ui::test
