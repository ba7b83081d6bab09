// SPDX-License-Identifier: MIT
#pragma once
// The library's message sink: forwards every report to the host's handler when one is installed
// (VNSetMessageHandler), else prints it on stderr. The engine and the exports report through it,
// from any thread.
#include <cstdint>
#include <mutex>

#include "core/messages.h"
#include "vntts/vntts.h"

namespace vntts::api {

class HostMessages final : public Messages {
public:
  HostMessages() = default;
  void Install(VNMessageProc handler, std::uintptr_t user);
  void Report(std::string_view text, std::string_view caption, MessageIcon icon) override;

private:
  std::mutex mutex_;
  VNMessageProc handler_ = nullptr;
  std::uintptr_t user_ = 0;
};

// The one sink of the library. It must exist before any engine (an engine that cannot be made
// still has to say so) and outlive every engine, so it cannot live inside the engine.
HostMessages& LibraryMessages();

} // namespace vntts::api
