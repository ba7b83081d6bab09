// SPDX-License-Identifier: MIT
#pragma once
// The exports' way to the windows: the library's one DialogHost, which loads the window module
// on the first window and reports through the library's message sink.
#include <cstdint>
#include <string_view>

#include "engine/speech_engine.h"
#include "ui/host/dialog_host.h"

namespace vntts::api {

ui::DialogHost& LibraryWindows();

// SpeakDlg (text in the internal encoding): 1 when the Speaker window is shown.
int ShowSpeakerWindow(SpeechEngine& engine, std::uintptr_t value, std::string_view text);
// Record: the Record window's result (2 once closed), 0 when it could not run.
int RunRecordWindow(SpeechEngine& engine, std::uintptr_t value);
// RecordToFile without a time: the Record window with path as the name to save under; 1 when
// the take was written to a file.
int RecordToFileWithWindow(SpeechEngine& engine, std::string_view path);

// Closes the windows before the engine goes (ReleaseLib, unload).
void ReleaseWindows() noexcept;

} // namespace vntts::api
