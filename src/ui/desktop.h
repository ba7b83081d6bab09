// SPDX-License-Identifier: MIT
#pragma once
// What the dialogs need from the desktop besides their own controls: message boxes, the file
// dialogs, the current directory, whole files and a millisecond clock. One Qt implementation,
// one fake for tests.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vntts::ui {

enum class BoxIcon { kNone, kInformation, kWarning, kError, kQuestion };
enum class BoxButtons { kOk, kYesNo };
enum class BoxAnswer { kOk, kYes, kNo };

struct FileDialogRequest {
  std::string_view filter = {};            // "Text Files (*.txt)|*.txt|All Files (*.*)|*.*|"
  std::string_view default_extension = {}; // added to a name typed without one
  std::string_view default_name = {};      // proposed file name, may be empty
  std::string_view title = {};             // empty: the desktop's own title
  std::string_view folder = {};            // where the dialog opens; empty: the current directory
  bool file_must_exist = false;            // a save dialog that only takes an existing file
};

class Desktop {
public:
  virtual ~Desktop() = default;

  // Modal on the window that asks; returns how the user answered.
  virtual BoxAnswer ShowMessage(std::string_view text, std::string_view caption, BoxIcon icon,
                                BoxButtons buttons = BoxButtons::kOk) = 0;

  // The chosen path (UTF-8), or nothing when the user cancelled. Saving asks before it
  // overwrites a file.
  virtual std::optional<std::string> ChooseFileToOpen(const FileDialogRequest& request) = 0;
  virtual std::optional<std::string> ChooseFileToSave(const FileDialogRequest& request) = 0;
  // Several files at once, each a full path; empty when the user cancelled.
  virtual std::vector<std::string> ChooseFilesToOpen(const FileDialogRequest& request) = 0;
  // A folder (UTF-8 path), or nothing when the user cancelled.
  virtual std::optional<std::string> ChooseFolder(std::string_view title) = 0;

  virtual std::string CurrentDirectory() = 0;
  virtual bool SetCurrentDirectory(const std::string& path) = 0;

  // The file's bytes, or nothing when it cannot be opened. A short read gives what was read.
  struct FileBytes {
    std::string bytes;
    std::uint64_t length = 0; // the file's size when it was opened
  };
  virtual std::optional<FileBytes> ReadFile(const std::string& path) = 0;

  // A millisecond tick that wraps at 2^32, as a timer's elapsed time is measured.
  virtual std::uint32_t TickCount() = 0;

  // Handles the window events that are waiting, so that a long task keeps the windows alive.
  virtual void ProcessPendingEvents() = 0;
};

} // namespace vntts::ui
