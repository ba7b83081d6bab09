// SPDX-License-Identifier: MIT
#include "api/host_messages.h"

#include <new>
#include <string>

#include "ui/host/dialog_host.h"

namespace vntts::api {
namespace {

int IconCode(MessageIcon icon) {
  switch (icon) {
  case MessageIcon::kInformation:
    return VN_MESSAGE_INFORMATION;
  case MessageIcon::kWarning:
    return VN_MESSAGE_WARNING;
  case MessageIcon::kError:
    break;
  }
  return VN_MESSAGE_ERROR;
}

} // namespace

void HostMessages::Install(VNMessageProc handler, std::uintptr_t user) {
  std::lock_guard lock(mutex_);
  handler_ = handler;
  user_ = user;
}

void HostMessages::Report(std::string_view text, std::string_view caption, MessageIcon icon) {
  VNMessageProc handler;
  std::uintptr_t user;
  {
    std::lock_guard lock(mutex_);
    handler = handler_;
    user = user_;
  }
  // Called outside the lock so that a handler may install another handler or report again.
  if (!handler) {
    // Once windows have been shown, messages are message boxes too.
    if (ui::ShowMessageInWindow(text, caption, icon)) return;
    StderrMessages().Report(text, caption, icon);
    return;
  }
  const std::string text_z(text), caption_z(caption);
  handler(user, text_z.c_str(), caption_z.c_str(), IconCode(icon));
}

HostMessages& LibraryMessages() {
  // Never destroyed: an engine released while the library unloads may still report, and no
  // order of static destructors could guarantee the sink outlives it.
  // Built in static storage rather than on the heap, so that unloading the library leaks
  // nothing either.
  alignas(HostMessages) static unsigned char storage[sizeof(HostMessages)];
  static HostMessages* const kMessages = new (storage) HostMessages;
  return *kMessages;
}

} // namespace vntts::api
