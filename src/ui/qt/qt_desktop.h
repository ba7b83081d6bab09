// SPDX-License-Identifier: MIT
#pragma once
// Desktop for Qt windows: message boxes and file dialogs owned by the asking window, the
// process's current directory, files, and a monotonic millisecond tick.
#include <QPointer>
#include <QWidget>

#include "ui/desktop.h"

namespace vntts::ui {

// A modal message box; Ok when it is closed without a button (Escape on an OK box).
BoxAnswer ShowMessageBox(QWidget* parent, std::string_view text, std::string_view caption,
                         BoxIcon icon, BoxButtons buttons);

// The file dialogs' type list for a filter in the "name|pattern|" form (see file_filter.h).
QStringList QtNameFilters(std::string_view filter);

class QtDesktop final : public Desktop {
public:
  explicit QtDesktop(QWidget* owner) : owner_(owner) {}

  BoxAnswer ShowMessage(std::string_view text, std::string_view caption, BoxIcon icon,
                        BoxButtons buttons) override;
  std::optional<std::string> ChooseFileToOpen(const FileDialogRequest& request) override;
  std::optional<std::string> ChooseFileToSave(const FileDialogRequest& request) override;
  std::vector<std::string> ChooseFilesToOpen(const FileDialogRequest& request) override;
  std::optional<std::string> ChooseFolder(std::string_view title) override;
  void ProcessPendingEvents() override;
  std::string CurrentDirectory() override;
  bool SetCurrentDirectory(const std::string& path) override;
  std::optional<FileBytes> ReadFile(const std::string& path) override;
  std::uint32_t TickCount() override;

private:
  enum class Choice { kOpen, kOpenSeveral, kSave };
  std::vector<std::string> ChooseFiles(const FileDialogRequest& request, Choice choice);

  QPointer<QWidget> owner_;
};

} // namespace vntts::ui
