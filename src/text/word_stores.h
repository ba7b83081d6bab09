// SPDX-License-Identifier: MIT
#pragma once
// The user's word stores as the text front end sees them. The stores themselves (files, the
// phrase database) live elsewhere; the front end only asks questions through these small
// interfaces, so that tests can hand it tables in memory. All strings are internal text.
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace vntts {

// Abbreviation definitions: "TP" -> "thành phố".
class DefinitionLookup {
public:
  virtual ~DefinitionLookup() = default;
  virtual std::optional<std::string> FindDefinition(std::string_view token) const = 0;
};

// Auto-correct pairs: a token as it stands -> its replacement text.
class AutoCorrectLookup {
public:
  virtual ~AutoCorrectLookup() = default;
  virtual std::optional<std::string> FindReplacement(std::string_view token) const = 0;
};

// Two-word phrases ("first second", compared byte for byte).
class PhraseLookup {
public:
  virtual ~PhraseLookup() = default;
  virtual bool IsPhrase(std::string_view first, std::string_view second) const = 0;
};

// Whether the voice can say a word as it stands (the engine answers from its archive and its
// spelling variants). Without one, the front end judges by the shape of a Vietnamese syllable.
class SpeakableCheck {
public:
  virtual ~SpeakableCheck() = default;
  virtual bool CanSpeak(std::string_view lower_case_word) const = 0;
};

// In-memory tables, for tests and for callers that load the stores themselves.
class MemoryDefinitions final : public DefinitionLookup {
public:
  std::map<std::string, std::string, std::less<>> entries;
  std::optional<std::string> FindDefinition(std::string_view token) const override {
    if (auto it = entries.find(token); it != entries.end()) return it->second;
    return std::nullopt;
  }
};

class MemoryAutoCorrect final : public AutoCorrectLookup {
public:
  std::map<std::string, std::string, std::less<>> entries;
  std::optional<std::string> FindReplacement(std::string_view token) const override {
    if (auto it = entries.find(token); it != entries.end()) return it->second;
    return std::nullopt;
  }
};

class MemoryPhrases final : public PhraseLookup {
public:
  std::set<std::string, std::less<>> entries; // "first second"
  bool IsPhrase(std::string_view first, std::string_view second) const override {
    if (first.empty() || second.empty()) return false;
    std::string key;
    key.reserve(first.size() + 1 + second.size());
    key.append(first).append(" ").append(second);
    return entries.contains(key);
  }
};

} // namespace vntts
