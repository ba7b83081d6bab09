// SPDX-License-Identifier: MIT
#include "ui/qt/gui_context.h"

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QThread>
#include <new>

#include "ui/qt/display_check.h"

namespace vntts::ui {
namespace {

std::atomic<QtMessageHandler> previous_handler{nullptr};
std::atomic<bool> application_ended{false};

// Our application lives on a thread of its own by design. Qt warns about that when it starts,
// and, once the application has ended at the end of the process, about timers that its own
// process-wide objects still hold from that thread; neither says anything to the host's users.
void QuietAboutThread(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (message.contains(QLatin1String("was not created in the main() thread"))) return;
  if (application_ended.load() && message.contains(QLatin1String("Timers cannot be stopped")))
    return;
  if (QtMessageHandler previous = previous_handler.load()) previous(type, context, message);
}

bool WaylandPluginInstalled() {
  const QDir platforms(QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                       QStringLiteral("/platforms"));
  return !platforms.entryList({QStringLiteral("libqwayland*.so")}, QDir::Files).isEmpty();
}

} // namespace

GuiContext& GuiContext::Instance() {
  // Never destroyed: the process may end while windows still exist, and Shutdown is what ends
  // them, not a static destructor racing Qt's own.
  alignas(GuiContext) static unsigned char storage[sizeof(GuiContext)];
  static GuiContext* const context = new (storage) GuiContext;
  return *context;
}

bool GuiContext::OwnsThread() const {
  std::lock_guard lock(mutex_);
  return thread_.joinable();
}

bool GuiContext::Ensure(std::string* why) {
  std::unique_lock lock(mutex_);
  if (thread_.joinable()) return thread_ready_;
  if (application_ended.load()) {
    if (why) *why = "The windows have ended with the program.";
    return false;
  }
  if (QCoreApplication* app = QCoreApplication::instance())
    return AdoptHostApplication(app, lock, why);

  std::vector<std::string> arguments{"vntts"};
  switch (ReachableWindowSystem(why)) {
  case WindowSystem::None:
    return false;
  case WindowSystem::Environment:
    break;
  case WindowSystem::X11:
    arguments.insert(arguments.end(), {"-platform", "xcb"});
    break;
  case WindowSystem::Wayland:
    if (!WaylandPluginInstalled()) {
      if (why) *why = "No display to show the window on (Wayland without Qt's Wayland plugin).";
      return false;
    }
    arguments.insert(arguments.end(), {"-platform", "wayland"});
    break;
  }
  thread_ = std::thread([this, arguments] { Run(arguments); });
  started_.wait(lock, [this] { return thread_ready_; });
  return true;
}

bool GuiContext::AdoptHostApplication(QCoreApplication* app, std::unique_lock<std::mutex>& lock,
                                      std::string* why) {
  if (!qobject_cast<QApplication*>(app)) {
    if (why) *why = "The program runs a QCoreApplication; windows need a QApplication.";
    return false;
  }
  if (Ready()) return true;
  // Once the host's application is gone no window can be shown or closed through it.
  QObject::connect(app, &QObject::destroyed, [this] { gui_thread_ = std::thread::id(); });
  if (QThread::currentThread() == app->thread()) {
    gui_thread_ = std::this_thread::get_id();
    return true;
  }
  lock.unlock();
  std::thread::id id;
  QMetaObject::invokeMethod(
      app, [&id] { id = std::this_thread::get_id(); }, Qt::BlockingQueuedConnection);
  gui_thread_ = id;
  return true;
}

void GuiContext::Run(std::vector<std::string> arguments) {
  std::vector<char*> argv;
  for (std::string& a : arguments)
    argv.push_back(a.data());
  argv.push_back(nullptr);
  int argc = static_cast<int>(arguments.size());

  // Kept for the life of the process: only this module runs Qt in a host without Qt.
  previous_handler = qInstallMessageHandler(QuietAboutThread);
  {
    QApplication app(argc, argv.data());
    // Closing the Speaker window must not end the loop that later windows need.
    app.setQuitOnLastWindowClosed(false);
    gui_thread_ = std::this_thread::get_id();
    {
      std::lock_guard lock(mutex_);
      thread_ready_ = true;
    }
    started_.notify_all();
    app.exec();
    gui_thread_ = std::thread::id();
  }
  // The thread stays, asleep, until the process ends. Qt takes the first thread that runs an
  // application for its main thread and frees that thread's data in its own clean-up at exit;
  // a thread that had ended by then would have that data freed twice.
  std::unique_lock lock(mutex_);
  application_ended = true;
  ended_.notify_all();
  ended_.wait(lock, [] { return false; });
}

void GuiContext::Shutdown() {
  std::thread thread;
  {
    std::lock_guard lock(mutex_);
    if (!thread_.joinable()) {
      gui_thread_ = std::thread::id(); // a host's application: we stop using it
      return;
    }
    if (OnGuiThread()) return; // the loop cannot wait for itself
    thread = std::move(thread_);
    thread_ready_ = false;
    stopping_ = true; // from now on nothing new is handed to the ending loop
  }
  // quit ends every loop of the thread, a modal window's included.
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [] { QCoreApplication::quit(); }, Qt::QueuedConnection);
  std::unique_lock lock(mutex_);
  ended_.wait(lock, [] { return application_ended.load(); });
  thread.detach();
}

} // namespace vntts::ui
