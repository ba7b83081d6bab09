// SPDX-License-Identifier: MIT
#pragma once
// The one entry of the window module (libvntts-ui.so) and what it offers. The library loads the
// module with dlopen when a window is first asked for, so that the library itself never needs a
// window system; both are built together, and the version number only guards against a module
// left over from another build.
#include <cstdint>
#include <string>
#include <string_view>

#include "core/messages.h"
#include "ui/dialog_engine.h"

namespace vntts::ui {

inline constexpr int kDialogModuleVersion = 2;
inline constexpr const char* kDialogModuleEntry = "VNUiModuleOpen";
inline constexpr const char* kDialogModuleFile = "libvntts-ui.so";

class DialogModule {
public:
  // Shows the Speaker window of the engine with text in its edit box (one window per engine: a
  // second call brings it forward with the new text). Returns once it is shown, or, with
  // wait_until_closed, once the user has closed it. 1 on success; 0 when no window can be shown
  // (why() says why).
  virtual int SpeakDlg(DialogEngine& engine, std::uintptr_t value, std::string_view utf8_text,
                       bool wait_until_closed) = 0;

  // Runs the Record window modally with file_name preset as the name to save under. Returns the
  // window's result (2 once closed), or -1 when no window can be shown. *saved tells whether the
  // take was written to a file, *file_name where.
  virtual int Record(DialogEngine& engine, std::uintptr_t value, std::string& file_name,
                     bool& saved) = 0;

  // Runs the "Tools" sheet modally; when it closes with the Auto Correct page's data changed,
  // the engine reads its auto-correct table again. The sheet's result (1 OK, 2 Cancel), or -1
  // when no window can be shown.
  virtual int Tools(DialogEngine& engine, std::uintptr_t value) = 0;
  // Runs the abbreviation editor modally: 1 once closed, -1 when no window can be shown.
  virtual int EditDefinition(DialogEngine& engine, std::uintptr_t value) = 0;

  // Shows a message of the library as a message box, from any thread. False when no window can
  // be shown, so that the caller prints it instead. From another thread than the windows' own it
  // does not wait for the box to be closed: the speech threads must never wait for a person.
  virtual bool ShowMessage(std::string_view text, std::string_view caption, MessageIcon icon) = 0;

  // On the windows' thread, handles their pending events (a long wait on that thread calls it
  // so that the windows stay alive); elsewhere nothing.
  virtual void PumpEvents() = 0;

  // Closes every window of the engine (null: of every engine), its speech stopped and an
  // unsaved take dropped, and returns once they are gone: the engine is about to be destroyed.
  virtual void CloseWindows(DialogEngine* engine) = 0;

  // How many windows are open (Speaker, Record, Tools and the editor), for a host that waits
  // for them.
  virtual int OpenWindows() = 0;

  virtual std::string Why() const = 0;

protected:
  ~DialogModule() = default;
};

using DialogModuleEntry = DialogModule* (*)(int version);

} // namespace vntts::ui
