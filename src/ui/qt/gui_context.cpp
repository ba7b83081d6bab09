// SPDX-License-Identifier: MIT
#include "ui/qt/gui_context.h"

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QThread>
#include <new>

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

#include "ui/qt/display_check.h"

namespace vntts::ui {
namespace {

// Calls reach the windows' thread as events of our own, so that the hand-over is ours too:
// under ThreadSanitizer it is announced (Qt's own queues are not built to be watched).
void HandedOver(void* what) {
#if defined(__SANITIZE_THREAD__)
  __tsan_release(what);
#else
  (void)what;
#endif
}
void TakenOver(void* what) {
#if defined(__SANITIZE_THREAD__)
  __tsan_acquire(what);
#else
  (void)what;
#endif
}

const QEvent::Type kCallEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

class CallEvent final : public QEvent {
public:
  explicit CallEvent(std::function<void()> call) : QEvent(kCallEvent), call_(std::move(call)) {}
  void Run() { call_(); }

private:
  std::function<void()> call_;
};

class Invoker final : public QObject {
public:
  bool event(QEvent* event) override {
    if (event->type() != kCallEvent) return QObject::event(event);
    TakenOver(this);
    TakenOver(event);
    static_cast<CallEvent*>(event)->Run();
    return true;
  }
};

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
  static GuiContext* const kContext = new (storage) GuiContext;
  return *kContext;
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
  case WindowSystem::kNone:
    return false;
  case WindowSystem::kEnvironment:
    break;
  case WindowSystem::kX11:
    arguments.insert(arguments.end(), {"-platform", "xcb"});
    break;
  case WindowSystem::kWayland:
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
    invoker_ = new Invoker;
    return true;
  }
  auto* invoker = new Invoker;
  invoker->moveToThread(app->thread());
  HandedOver(invoker);
  invoker_ = invoker;
  lock.unlock();
  std::thread::id id;
  RunAndWait([&id] { id = std::this_thread::get_id(); });
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
    Invoker invoker;
    invoker_ = &invoker;
    gui_thread_ = std::this_thread::get_id();
    {
      std::lock_guard lock(mutex_);
      thread_ready_ = true;
    }
    started_.notify_all();
    app.exec();
    gui_thread_ = std::thread::id();
    invoker_ = nullptr;
  }
  // The thread stays, asleep, until the process ends. Qt takes the first thread that runs an
  // application for its main thread and frees that thread's data in its own clean-up at exit;
  // a thread that had ended by then would have that data freed twice.
  std::unique_lock lock(mutex_);
  application_ended = true;
  ended_.notify_all();
  ended_.wait(lock, [] { return false; });
}

void GuiContext::Post(std::function<void()> call) {
  QObject* invoker = invoker_.load();
  if (!invoker) return;
  auto* event = new CallEvent(std::move(call));
  HandedOver(event);
  QCoreApplication::postEvent(invoker, event);
}

void GuiContext::RunAndWait(std::function<void()> call) {
  struct Done {
    std::mutex mutex;
    std::condition_variable changed;
    bool done = false;
  };
  auto done = std::make_shared<Done>();
  // Signalled when the call has run, or when the event is dropped unrun by an ending loop.
  std::shared_ptr<void> signal(nullptr, [done](void*) {
    {
      std::lock_guard lock(done->mutex);
      done->done = true;
    }
    done->changed.notify_all();
  });
  Post([call = std::move(call), signal = std::move(signal)] { call(); });
  std::unique_lock lock(done->mutex);
  done->changed.wait(lock, [&] { return done->done; });
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
  if (QObject* invoker = invoker_.load())
    QCoreApplication::postEvent(invoker, new CallEvent([] { QCoreApplication::quit(); }));
  std::unique_lock lock(mutex_);
  ended_.wait(lock, [] { return application_ended.load(); });
  thread.detach();
}

} // namespace vntts::ui
