// SPDX-License-Identifier: MIT
#pragma once
// The library's side of the windows: finds and loads the window module (libvntts-ui.so) the
// first time a window is asked for, serves it the engine the windows work on, and says plainly
// when no window can be shown (no module, no display) instead of failing silently or crashing.
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "core/messages.h"
#include "engine/speech_engine.h"
#include "ui/host/engine_dialogs.h"
#include "ui/module_interface.h"

namespace vntts::ui {

class DialogHost {
public:
  // Failures are told through messages (which must outlive the host).
  explicit DialogHost(Messages& messages) : messages_(messages) {}
  ~DialogHost();
  DialogHost(const DialogHost&) = delete;
  DialogHost& operator=(const DialogHost&) = delete;

  // Shows the engine's Speaker window with UTF-8 text in its edit box; 1 when shown, 0 after
  // saying why not. With wait_until_closed it returns once the window is closed.
  int SpeakDlg(SpeechEngine& engine, std::uintptr_t value, std::string_view utf8_text,
               bool wait_until_closed = false);
  // Runs the Record window with file_name preset; the window's result, or 0 after saying why it
  // could not run. *saved (may be null) tells whether the take was written to file_name.
  int Record(SpeechEngine& engine, std::uintptr_t value, std::string& file_name, bool* saved);
  // Run the "Tools" sheet and the abbreviation editor; the window's result, or 0 after saying
  // why it could not run.
  int Tools(SpeechEngine& engine, std::uintptr_t value);
  int EditDefinition(SpeechEngine& engine, std::uintptr_t value);

  // Closes the windows and forgets the engine: it is about to be destroyed.
  void CloseWindows();

private:
  DialogModule* Module();
  DialogEngine& Serve(SpeechEngine& engine);
  // Runs a modal window through the module; its result, or 0 after saying why it could not.
  int RunModal(SpeechEngine& engine, const std::function<int(DialogModule&, DialogEngine&)>& run);

  Messages& messages_;
  std::mutex mutex_;
  std::unique_ptr<EngineDialogs> served_;
};

// The module, loaded once per process; null with the reason in *why when it cannot be. The
// file is looked for beside the library (or program) that holds this code, then by name;
// VNTTS_UI_MODULE names another file.
DialogModule* LoadDialogModule(std::string* why);
// The module if it has been loaded, else null; never loads it.
DialogModule* LoadedDialogModule();

// Shows a message as a message box once the module has shown windows; false otherwise (the
// caller prints it).
bool ShowMessageInWindow(std::string_view text, std::string_view caption, MessageIcon icon);

} // namespace vntts::ui
