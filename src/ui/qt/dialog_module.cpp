// SPDX-License-Identifier: MIT
// The window module's entry: what the library asks of libvntts-ui.so.
#include <QApplication>
#include <QPixmapCache>
#include <QPointer>
#include <algorithm>
#include <cstdlib>
#include <map>
#include <mutex>
#include <new>
#include <vector>

#include "ui/module_interface.h"
#include "ui/qt/definition_window.h"
#include "ui/qt/gui_context.h"
#include "ui/qt/qt_desktop.h"
#include "ui/qt/record_window.h"
#include "ui/qt/speaker_window.h"
#include "ui/qt/tools_sheet.h"

namespace vntts::ui {
namespace {

BoxIcon ToBoxIcon(MessageIcon icon) {
  switch (icon) {
  case MessageIcon::kInformation:
    return BoxIcon::kInformation;
  case MessageIcon::kWarning:
    return BoxIcon::kWarning;
  case MessageIcon::kError:
    break;
  }
  return BoxIcon::kError;
}

class WindowModule final : public DialogModule {
public:
  int SpeakDlg(DialogEngine& engine, std::uintptr_t value, std::string_view utf8_text,
               bool wait_until_closed) override {
    if (!Ensure()) return 0;
    const QString text =
        QString::fromUtf8(utf8_text.data(), static_cast<qsizetype>(utf8_text.size()));
    return GuiContext::Instance().Call([&] {
      SpeakerWindow* window = SpeakerFor(engine, value);
      window->SetEditText(text);
      HookExitAfterWindow();
      if (wait_until_closed) {
        window->exec();
        return 1;
      }
      window->show();
      if (!QGuiApplication::platformName().startsWith(QLatin1String("offscreen"))) {
        window->raise();
        window->activateWindow();
      }
      return 1;
    });
  }

  int Record(DialogEngine& engine, std::uintptr_t value, std::string& file_name,
             bool& saved) override {
    if (!Ensure()) return -1;
    return GuiContext::Instance().Call([&] {
      RecordWindow window(engine.recorder(), value, file_name);
      records_.push_back({&engine, &window});
      HookExitAfterWindow();
      const int result = window.exec();
      std::erase_if(records_, [&](const auto& r) { return r.window == &window; });
      AfterWindowClosed();
      file_name = window.controller().file_name();
      saved = window.controller().saved();
      return result;
    });
  }

  int Tools(DialogEngine& engine, std::uintptr_t) override {
    if (!Ensure()) return -1;
    return GuiContext::Instance().Call([&] {
      ToolsSheet sheet(engine.tools().DataFolder());
      const int result = RunModal(engine, sheet);
      // The sheet's result as the property sheet gave it: 1 for OK, 2 for Cancel.
      if (sheet.auto_correct().changed == 1) engine.tools().ReloadAutoCorrect();
      return result == QDialog::Accepted ? 1 : 2;
    });
  }

  int EditDefinition(DialogEngine& engine, std::uintptr_t) override {
    if (!Ensure()) return -1;
    return GuiContext::Instance().Call([&] {
      DefinitionWindow window(engine.tools());
      RunModal(engine, window);
      return 1;
    });
  }

  bool ShowMessage(std::string_view text, std::string_view caption, MessageIcon icon) override {
    GuiContext& gui = GuiContext::Instance();
    if (!gui.Ready()) return false;
    if (gui.OnGuiThread()) {
      ShowMessageBox(nullptr, text, caption, ToBoxIcon(icon), BoxButtons::kOk);
      return true;
    }
    gui.Post([text = std::string(text), caption = std::string(caption), icon] {
      ShowMessageBox(nullptr, text, caption, ToBoxIcon(icon), BoxButtons::kOk);
    });
    return true;
  }

  void PumpEvents() override {
    if (GuiContext::Instance().OnGuiThread()) QCoreApplication::processEvents();
  }

  void CloseWindows(DialogEngine* engine) override {
    if (!GuiContext::Instance().Ready()) return;
    GuiContext::Instance().Call([&] { CloseOn(engine); });
  }

  // At the end of the process: the windows close, then our thread ends before Qt's own
  // clean-up runs.
  void Shutdown() {
    CloseWindows(nullptr);
    GuiContext::Instance().Shutdown();
  }

  int OpenWindows() override {
    if (!GuiContext::Instance().Ready()) return 0;
    return GuiContext::Instance().Call([&] {
      int open = static_cast<int>(records_.size() + modals_.size());
      for (const auto& [engine, window] : speakers_)
        open += window && window->isVisible() ? 1 : 0;
      return open;
    });
  }

  std::string Why() const override {
    std::lock_guard lock(mutex_);
    return why_;
  }

private:
  struct OpenRecord {
    DialogEngine* engine;
    RecordWindow* window;
  };
  struct OpenModal {
    DialogEngine* engine;
    QDialog* window;
  };

  // Runs a modal tool window of the engine, known to CloseWindows while it is open.
  int RunModal(DialogEngine& engine, QDialog& window) {
    modals_.push_back({&engine, &window});
    HookExitAfterWindow();
    const int result = window.exec();
    std::erase_if(modals_, [&](const OpenModal& m) { return m.window == &window; });
    AfterWindowClosed();
    return result;
  }

  bool Ensure() {
    std::string why;
    const bool ready = GuiContext::Instance().Ensure(&why);
    std::lock_guard lock(mutex_);
    why_ = ready ? "" : why;
    return ready;
  }

  // At the end of the process the windows must close and our thread end before Qt's objects
  // are destroyed; exit runs its handlers last registered first, and Qt registers some of its
  // objects when a window first needs them, so the hook is registered again after each window
  // is opened (a bounded number of times).
  void HookExitAfterWindow() {
    std::lock_guard lock(mutex_);
    if (exit_hooks_ >= kMaxExitHooks) return;
    ++exit_hooks_;
    std::atexit([] { OpenModule().Shutdown(); });
  }

  // With no window left the thread holds no timer: Qt's pixmap cache is emptied, which stops
  // its flush timer.
  void AfterWindowClosed() {
    if (records_.empty() && modals_.empty() &&
        std::none_of(speakers_.begin(), speakers_.end(),
                     [](const auto& s) { return s.second && s.second->isVisible(); }))
      QPixmapCache::clear();
  }

  // The Speaker window of an engine: the open one, or a new one.
  SpeakerWindow* SpeakerFor(DialogEngine& engine, std::uintptr_t value) {
    QPointer<SpeakerWindow>& slot = speakers_[&engine];
    if (!slot) {
      slot = new SpeakerWindow(engine.speaker(), value);
      SpeakerWindow* window = slot;
      QObject::connect(window, &QDialog::finished, window, [this, window] {
        window->deleteLater();
        AfterWindowClosed();
      });
    }
    return slot;
  }

  // Closes the windows of one engine (null: of all), on the windows' thread.
  void CloseOn(DialogEngine* engine) {
    for (auto it = speakers_.begin(); it != speakers_.end();) {
      if (engine && it->first != engine) {
        ++it;
        continue;
      }
      if (SpeakerWindow* window = it->second) {
        window->reject();
        delete window;
      }
      it = speakers_.erase(it);
    }
    for (const OpenRecord& r : std::vector<OpenRecord>(records_))
      if (!engine || r.engine == engine) r.window->Abandon();
    for (const OpenModal& m : std::vector<OpenModal>(modals_))
      if (!engine || m.engine == engine) m.window->reject();
    AfterWindowClosed();
  }

public:
  static WindowModule& OpenModule() {
    alignas(WindowModule) static unsigned char storage[sizeof(WindowModule)];
    static WindowModule* const kModule = new (storage) WindowModule;
    return *kModule;
  }

private:
  mutable std::mutex mutex_;
  std::string why_;
  static constexpr int kMaxExitHooks = 32;
  int exit_hooks_ = 0;
  // Only touched on the windows' thread.
  std::map<DialogEngine*, QPointer<SpeakerWindow>> speakers_;
  std::vector<OpenRecord> records_;
  std::vector<OpenModal> modals_;
};

} // namespace
} // namespace vntts::ui

extern "C" __attribute__((visibility("default"))) vntts::ui::DialogModule*
VNUiModuleOpen(int version) {
  if (version != vntts::ui::kDialogModuleVersion) return nullptr;
  return &vntts::ui::WindowModule::OpenModule();
}
