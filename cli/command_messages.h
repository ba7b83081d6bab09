// SPDX-License-Identifier: MIT
#pragma once
// The library's messages as the command shows them: each on stderr after "vntts:". The library
// shows its failures with an information icon too (a missing sound device, a file it cannot
// write), so every message but the notes that a job completed means the job failed. Those notes
// ("Complete!" after each WAV file) are shown only with --verbose.
#include <atomic>
#include <mutex>

#include "core/messages.h"

namespace vntts::cli {

class CommandMessages final : public Messages {
public:
  explicit CommandMessages(bool verbose = false) : verbose_(verbose) {}
  void Report(std::string_view text, std::string_view caption, MessageIcon icon) override;
  bool Failed() const { return failed_; }

private:
  bool verbose_;
  std::atomic<bool> failed_{false};
  std::mutex mutex_;
};

} // namespace vntts::cli
