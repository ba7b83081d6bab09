// SPDX-License-Identifier: MIT
#include "api/windows.h"

#include <new>
#include <string>

#include "api/host_messages.h"
#include "text/charset/charsets.h"

namespace vntts::api {

ui::DialogHost& LibraryWindows() {
  // Never destroyed, like the message sink: the unload path still closes windows through it.
  alignas(ui::DialogHost) static unsigned char storage[sizeof(ui::DialogHost)];
  static ui::DialogHost* const kHost = new (storage) ui::DialogHost(LibraryMessages());
  return *kHost;
}

int ShowSpeakerWindow(SpeechEngine& engine, std::uintptr_t value, std::string_view text) {
  // The export's text is the engine's own; the window holds Unicode.
  return LibraryWindows().SpeakDlg(engine, value, InternalToUtf8(text));
}

int RunRecordWindow(SpeechEngine& engine, std::uintptr_t value) {
  std::string file_name;
  return LibraryWindows().Record(engine, value, file_name, nullptr);
}

int RecordToFileWithWindow(SpeechEngine& engine, std::string_view path) {
  std::string file_name(path);
  bool saved = false;
  LibraryWindows().Record(engine, 0, file_name, &saved);
  return saved ? 1 : 0;
}

void ReleaseWindows() noexcept {
  try {
    LibraryWindows().CloseWindows();
  } catch (...) {
    // Nothing may stop the engine from being released.
  }
}

} // namespace vntts::api
