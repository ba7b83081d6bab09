// SPDX-License-Identifier: MIT
#pragma once
// Where user-visible failure texts go. Components that must tell the user something take a
// Messages& and never print or open dialogs themselves, so that a host, the UI module or a test
// decides how the text reaches a person.
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

enum class MessageIcon { kInformation, kWarning, kError };

class Messages {
public:
  virtual ~Messages() = default;
  virtual void Report(std::string_view text, std::string_view caption, MessageIcon icon) = 0;
};

// The fallback sink: "caption: text" on stderr (just the text when there is no caption).
class StderrMessages final : public Messages {
public:
  void Report(std::string_view text, std::string_view caption, MessageIcon icon) override;
};

// Keeps every report so that tests can check the exact texts and captions.
class RecordedMessages final : public Messages {
public:
  struct Entry {
    std::string text;
    std::string caption;
    MessageIcon icon;
  };
  void Report(std::string_view text, std::string_view caption, MessageIcon icon) override {
    entries.push_back({std::string(text), std::string(caption), icon});
  }
  std::vector<Entry> entries;
};

} // namespace vntts
