// SPDX-License-Identifier: MIT
#pragma once
// The outcome of a store operation: success, or a sentence that says what went wrong and
// where, ready to be shown to the user. Stores never throw for bad files.
#include <string>
#include <utility>

namespace vntts {

struct StoreResult {
  bool ok = true;
  std::string error;

  static StoreResult Success() { return {}; }
  static StoreResult Failure(std::string text) { return {false, std::move(text)}; }
  explicit operator bool() const { return ok; }
};

} // namespace vntts
