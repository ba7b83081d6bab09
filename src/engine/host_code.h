// SPDX-License-Identifier: MIT
#pragma once
// Host code that the engine's worker threads call (the notification function, the message
// handler, a dialog's message pump) may take as long as the host likes, and may itself wait for
// the host's own thread. So nothing the host's thread does ever waits for a worker that is
// inside host code: each worker thread carries a mark that says so, and every wait on a worker
// takes "it is away" as an answer. A worker back from host code looks at its stop flag before it
// does anything else. Long work without effects (converting and scanning a huge text) marks the
// worker away the same way, so that Stop need not wait for it either.
//
// The mark is reached through one thread-local pointer, set for the life of a worker thread;
// threads that are not workers have none and the scope below does nothing on them.
#include <condition_variable>
#include <mutex>

#include "core/messages.h"

namespace vntts {

class WorkerMark {
public:
  // `mutex` and `changed` are the owner's: the mark changes under that mutex and wakes that
  // condition variable, so the owner's waits can test it in their predicates. `watchers`
  // (under the mutex too) counts the owner's waits that test it: with none, a change wakes
  // nobody, which spares the owner's other waiters a wake-up per sentence.
  WorkerMark(const void* owner, std::mutex& mutex, std::condition_variable& changed,
             const int& watchers)
      : owner_(owner), mutex_(mutex), changed_(changed), watchers_(watchers) {}

  // In host code or in quiet work; with the owner's mutex held.
  bool Away() const { return depth_ > 0; }
  const void* owner() const { return owner_; }

  void Enter();
  void Leave();

private:
  const void* owner_;
  std::mutex& mutex_;
  std::condition_variable& changed_;
  const int& watchers_;
  int depth_ = 0;
};

// Binds the calling thread to its mark for as long as the object lives.
class WorkerThreadBinding {
public:
  explicit WorkerThreadBinding(WorkerMark& mark);
  ~WorkerThreadBinding();
  WorkerThreadBinding(const WorkerThreadBinding&) = delete;
  WorkerThreadBinding& operator=(const WorkerThreadBinding&) = delete;
};

// The mark of the calling thread, null on threads that are not workers.
const WorkerMark* CurrentWorkerMark();

// Marks the calling worker thread as away for the scope: in host code, or in work whose only
// result the worker looks at the stop flag before using.
class AwayScope {
public:
  AwayScope();
  ~AwayScope();
  AwayScope(const AwayScope&) = delete;
  AwayScope& operator=(const AwayScope&) = delete;

private:
  WorkerMark* mark_;
};
using HostCodeScope = AwayScope;
using QuietWorkScope = AwayScope;

// Passes reports on to the host's message handler as host code.
class HostCodeMessages final : public Messages {
public:
  explicit HostCodeMessages(Messages& host) : host_(host) {}
  void Report(std::string_view text, std::string_view caption, MessageIcon icon) override {
    HostCodeScope scope;
    host_.Report(text, caption, icon);
  }

private:
  Messages& host_;
};

} // namespace vntts
