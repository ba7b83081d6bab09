// SPDX-License-Identifier: MIT
#pragma once
// Where the windows live. A host that runs a QApplication gets them on that application's
// thread. Any other host gets one thread of ours that owns a QApplication and its event loop
// from the first window to the end of the process: Qt ties process-wide state (its pixmap
// cache, for one) to the first thread that runs a QApplication, so a second application on a
// second thread is not safe; between windows the thread sleeps in its loop. Everything that
// touches a widget runs on that thread: Call waits for the result, Post does not.
#include <QCoreApplication>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace vntts::ui {

class GuiContext {
public:
  static GuiContext& Instance();

  // Makes sure windows can be shown: the host's QApplication, or our thread started now. False
  // when neither is possible (no display, or a host application without widgets).
  bool Ensure(std::string* why);
  // True once Ensure has succeeded and until Shutdown begins.
  bool Ready() const { return !stopping_.load() && gui_thread_.load() != std::thread::id(); }
  bool OnGuiThread() const { return gui_thread_.load() == std::this_thread::get_id(); }
  // True while our own thread runs the windows (not a host's application).
  bool OwnsThread() const;

  // Runs call on the windows' thread and returns its result; a default result when the loop
  // ended before it could run the call.
  template <class F> auto Call(F&& call) -> std::invoke_result_t<F&> {
    using Result = std::invoke_result_t<F&>;
    if (OnGuiThread()) return call();
    if constexpr (std::is_void_v<Result>) {
      RunAndWait([&] { call(); });
    } else {
      std::optional<Result> result;
      RunAndWait([&] { result.emplace(call()); });
      return result ? std::move(*result) : Result{};
    }
  }

  // Queues call for the windows' thread and returns at once; a call that the ending loop never
  // runs is dropped.
  void Post(std::function<void()> call);

  // Ends our application at the end of the process (its windows must be closed first) and waits
  // for that. Nothing for a host's application.
  void Shutdown();

private:
  GuiContext() = default;
  bool AdoptHostApplication(QCoreApplication* app, std::unique_lock<std::mutex>& lock,
                            std::string* why);
  void RunAndWait(std::function<void()> call);
  void Run(std::vector<std::string> arguments);

  mutable std::mutex mutex_;
  std::condition_variable started_;
  std::condition_variable ended_;
  std::thread thread_;
  bool thread_ready_ = false;
  std::atomic<std::thread::id> gui_thread_{};
  std::atomic<bool> stopping_{false};
  // Receives the posted calls on the windows' thread.
  std::atomic<QObject*> invoker_{nullptr};
};

} // namespace vntts::ui
