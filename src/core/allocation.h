// SPDX-License-Identifier: MIT
#pragma once
// Allocation that reports failure as a null pointer instead of an exception, for the places
// where running out of memory has a defined answer (a message and a failure result).
//
// Tests reach those answers by setting the environment variable VNTTS_FAIL_ALLOCATION to the
// name of the allocation that should fail (for example "engine"); no test code is compiled into
// the library for it and nothing global is kept.
#include <memory>
#include <new>
#include <string_view>
#include <utility>

namespace vntts {

// True when VNTTS_FAIL_ALLOCATION names what (a comma-separated list, or "all").
bool AllocationFailureRequested(std::string_view what);

// Makes a T, or returns null when memory runs out while allocating or constructing it (or when
// a test asked for what to fail). Exceptions other than std::bad_alloc pass through.
template <class T, class... Args>
std::unique_ptr<T> MakeOrNull(std::string_view what, Args&&... args) {
  if (AllocationFailureRequested(what)) return nullptr;
  try {
    return std::make_unique<T>(std::forward<Args>(args)...);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

} // namespace vntts
