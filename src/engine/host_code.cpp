// SPDX-License-Identifier: MIT
#include "engine/host_code.h"

namespace vntts {
namespace {
thread_local WorkerMark* this_thread_mark = nullptr;
} // namespace

void WorkerMark::Enter() {
  bool wake;
  {
    std::lock_guard lock(mutex_);
    ++depth_;
    wake = watchers_ > 0;
  }
  if (wake) changed_.notify_all();
}

void WorkerMark::Leave() {
  bool wake;
  {
    std::lock_guard lock(mutex_);
    --depth_;
    wake = watchers_ > 0;
  }
  if (wake) changed_.notify_all();
}

WorkerThreadBinding::WorkerThreadBinding(WorkerMark& mark) {
  this_thread_mark = &mark;
}

WorkerThreadBinding::~WorkerThreadBinding() {
  this_thread_mark = nullptr;
}

const WorkerMark* CurrentWorkerMark() {
  return this_thread_mark;
}

AwayScope::AwayScope() : mark_(this_thread_mark) {
  if (mark_) mark_->Enter();
}

AwayScope::~AwayScope() {
  if (mark_) mark_->Leave();
}

} // namespace vntts
