// SPDX-License-Identifier: MIT
// vntts gui: the Speaker window as an application; vntts gui record: the Record window;
// vntts gui tools and vntts gui definitions: the Tools sheet and the abbreviation editor. The
// windows come from libvntts-ui.so beside the program (or VNTTS_UI_MODULE); without it, or
// without a display, the command says so and fails.
#include <unistd.h>

#include <cstdio>
#include <optional>
#include <string>

#include "command.h"
#include "command_messages.h"
#include "core/data_folder.h"
#include "engine/speech_engine.h"
#include "option_parser.h"
#include "speech_speed.h"
#include "text_input.h"
#include "ui/host/dialog_host.h"

namespace vntts::cli {
namespace {

constexpr CommandSyntax kSyntax{
    "gui", "[TEXT...] | record [FILE.wav] | tools | definitions",
    "Opens the Speaker window with TEXT (or the text of -f FILE, or of standard input when it is "
    "not a terminal) and ends when it is closed. 'vntts gui record' opens the Record window; "
    "closing it and declining to choose a file saves the take as FILE.wav. 'vntts gui tools' opens "
    "the Tools sheet (build a voice, collect phrases, edit auto-correct pairs) and 'vntts gui "
    "definitions' the abbreviation editor."};

constexpr OptionSpec kOptions[] = {
    {'f', 'f', "file", "FILE", "put FILE's text (UTF-8) in the window; - is standard input"},
    {'s', 's', "speed", "WPM", "speak at WPM words a minute (127 to 1000), the pitch kept"},
};

// Message boxes once the windows are up, the terminal before.
class WindowOrTerminal final : public Messages {
public:
  void Report(std::string_view text, std::string_view caption, MessageIcon icon) override {
    if (!ui::ShowMessageInWindow(text, caption, icon)) terminal_.Report(text, caption, icon);
  }

private:
  CommandMessages terminal_;
};

// The whole text of a file or of standard input; false after saying why.
bool ReadText(const std::string& path, std::string& text) {
  TextInput input(path);
  std::string piece;
  while (input.Next(piece))
    text += piece;
  if (input.Error().empty()) return true;
  std::fprintf(stderr, "vntts: %s\n", input.Error().c_str());
  return false;
}

} // namespace

int RunGui(Args args) {
  const ParsedArgs parsed = ParseArgs(kSyntax, kOptions, args);
  if (parsed.exit_status) return *parsed.exit_status;
  const std::vector<std::string>& operands = parsed.operands;
  const std::string window = operands.empty() ? std::string() : operands.front();
  const bool record = window == "record";
  const bool tool = window == "tools" || window == "definitions";
  if (tool && (operands.size() > 1 || !parsed.options.empty()))
    return UsageError(kSyntax, "gui " + window + " takes nothing more");
  std::string file;
  std::optional<std::uint32_t> speed;
  for (const auto& o : parsed.options) {
    if (o.id == 'f') file = o.value;
    if (o.id != 's') continue;
    const auto wpm = NumberValue(kSyntax, o, 10, 1000);
    if (!wpm) return kExitUsage;
    speed = SpeedPercentForWordsPerMinute(static_cast<unsigned>(*wpm), nullptr);
  }
  if (record && (operands.size() > 2 || !file.empty()))
    return UsageError(kSyntax, "gui record takes only the file to save the take as");

  std::string text;
  if (!record && !tool) {
    for (const std::string& word : operands)
      text += (text.empty() ? "" : " ") + word;
    if (!file.empty() && !ReadText(file, text)) return kExitFailed;
    if (file.empty() && operands.empty() && ::isatty(STDIN_FILENO) == 0 && !ReadText("-", text))
      return kExitFailed;
  }

  WindowOrTerminal messages;
  SpeechEngine engine(messages, DataFolder::Locate());
  // The window's rate slider adds silence after words; the speed, which the window leaves as it
  // finds it, is the voice's own pace.
  if (speed) engine.SetSpeed(*speed);
  ui::DialogHost windows(messages);
  int status = kExitDone;
  if (window == "tools") {
    if (windows.Tools(engine, 0) == 0) status = kExitFailed;
  } else if (window == "definitions") {
    if (windows.EditDefinition(engine, 0) == 0) status = kExitFailed;
  } else if (record) {
    std::string take = operands.size() == 2 ? operands[1] : std::string();
    bool saved = false;
    if (windows.Record(engine, 0, take, &saved) == 0)
      status = kExitFailed;
    else if (saved)
      std::printf("%s\n", take.c_str());
  } else if (windows.SpeakDlg(engine, 0, text, /*wait_until_closed=*/true) == 0) {
    status = kExitFailed;
  }
  windows.CloseWindows();
  return status;
}

} // namespace vntts::cli
