// SPDX-License-Identifier: MIT
#include "ui/qt/qt_desktop.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <chrono>

#include "ui/file_filter.h"

namespace vntts::ui {
namespace {

QString FromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QMessageBox::Icon QtIcon(BoxIcon icon) {
  switch (icon) {
  case BoxIcon::kInformation:
    return QMessageBox::Information;
  case BoxIcon::kWarning:
    return QMessageBox::Warning;
  case BoxIcon::kError:
    return QMessageBox::Critical;
  case BoxIcon::kQuestion:
    return QMessageBox::Question;
  case BoxIcon::kNone:
    break;
  }
  return QMessageBox::NoIcon;
}

} // namespace

BoxAnswer ShowMessageBox(QWidget* parent, std::string_view text, std::string_view caption,
                         BoxIcon icon, BoxButtons buttons) {
  QMessageBox box(
      QtIcon(icon), FromUtf8(caption), FromUtf8(text),
      buttons == BoxButtons::kYesNo ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok, parent);
  box.setObjectName(QStringLiteral("vntts_message_box"));
  const int answer = box.exec();
  if (answer == QMessageBox::Yes) return BoxAnswer::kYes;
  if (answer == QMessageBox::No) return BoxAnswer::kNo;
  return BoxAnswer::kOk;
}

QStringList QtNameFilters(std::string_view filter) {
  QStringList names;
  for (const FileFilterEntry& entry : ParseFileFilter(filter)) {
    // A name that lists its patterns in parentheses is shown as it stands and matches what it
    // says; any other name gets the entry's patterns appended.
    QString name = FromUtf8(entry.name);
    if (!name.endsWith(QLatin1Char(')')) && !entry.pattern.empty())
      name += QStringLiteral(" (") +
              FromUtf8(entry.pattern).replace(QLatin1Char(';'), QLatin1Char(' ')) +
              QLatin1Char(')');
    names << name;
  }
  return names;
}

BoxAnswer QtDesktop::ShowMessage(std::string_view text, std::string_view caption, BoxIcon icon,
                                 BoxButtons buttons) {
  return ShowMessageBox(owner_, text, caption, icon, buttons);
}

std::vector<std::string> QtDesktop::ChooseFiles(const FileDialogRequest& request, Choice choice) {
  QFileDialog dialog(owner_, FromUtf8(request.title));
  dialog.setObjectName(QStringLiteral("vntts_file_dialog"));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setAcceptMode(choice == Choice::kSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  // A save dialog that must take an existing file refuses a new name, as the dialog says.
  dialog.setFileMode(choice == Choice::kOpenSeveral ? QFileDialog::ExistingFiles
                     : choice == Choice::kOpen || request.file_must_exist
                         ? QFileDialog::ExistingFile
                         : QFileDialog::AnyFile);
  dialog.setNameFilters(QtNameFilters(request.filter));
  dialog.setDefaultSuffix(FromUtf8(request.default_extension));
  dialog.setDirectory(request.folder.empty() ? QDir::current() : QDir(FromUtf8(request.folder)));
  if (!request.default_name.empty()) dialog.selectFile(FromUtf8(request.default_name));
  std::vector<std::string> chosen;
  if (dialog.exec() != QDialog::Accepted) return chosen;
  for (const QString& file : dialog.selectedFiles())
    chosen.push_back(file.toStdString());
  return chosen;
}

std::optional<std::string> QtDesktop::ChooseFileToOpen(const FileDialogRequest& request) {
  std::vector<std::string> chosen = ChooseFiles(request, Choice::kOpen);
  if (chosen.empty()) return std::nullopt;
  return chosen.front();
}

std::optional<std::string> QtDesktop::ChooseFileToSave(const FileDialogRequest& request) {
  std::vector<std::string> chosen = ChooseFiles(request, Choice::kSave);
  if (chosen.empty()) return std::nullopt;
  return chosen.front();
}

std::vector<std::string> QtDesktop::ChooseFilesToOpen(const FileDialogRequest& request) {
  return ChooseFiles(request, Choice::kOpenSeveral);
}

std::optional<std::string> QtDesktop::ChooseFolder(std::string_view title) {
  const QString folder = QFileDialog::getExistingDirectory(
      owner_, FromUtf8(title), QDir::currentPath(), QFileDialog::DontUseNativeDialog);
  if (folder.isEmpty()) return std::nullopt;
  return folder.toStdString();
}

void QtDesktop::ProcessPendingEvents() {
  QCoreApplication::processEvents();
}

std::string QtDesktop::CurrentDirectory() {
  return QDir::currentPath().toStdString();
}

bool QtDesktop::SetCurrentDirectory(const std::string& path) {
  return QDir::setCurrent(QString::fromStdString(path));
}

std::optional<Desktop::FileBytes> QtDesktop::ReadFile(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  FileBytes result;
  result.length = static_cast<std::uint64_t>(file.size());
  result.bytes = file.readAll().toStdString();
  return result;
}

std::uint32_t QtDesktop::TickCount() {
  using namespace std::chrono;
  return static_cast<std::uint32_t>(
      duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

} // namespace vntts::ui
