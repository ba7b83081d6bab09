// SPDX-License-Identifier: MIT
#pragma once
// What every export wraps its work in: no exception may reach the host. Running out of memory is
// told to the user as "Out off memory !!!"; any other escaped exception is told with its own
// text. Either way the export returns its failure value.
#include <exception>
#include <new>
#include <type_traits>
#include <utility>

#include "api/engine_slot.h"
#include "api/host_messages.h"

namespace vntts::api {

void ReportEscapedException(std::exception_ptr error) noexcept;

// Runs body(); on an exception reports it and returns failure (nothing for void bodies).
template <class Result, class Body> Result Guarded(Result failure, Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    ReportEscapedException(std::current_exception());
    return failure;
  }
}

template <class Body> void GuardedVoid(Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
  } catch (...) {
    ReportEscapedException(std::current_exception());
  }
}

// Exports that create the engine on first use: body(engine), or failure when it cannot be made.
template <class Result, class Body> Result WithEngine(Result failure, Body&& body) noexcept {
  return Guarded(failure, [&]() -> Result {
    const EngineHandle engine = EngineCreatedOnDemand();
    return engine ? body(*engine) : failure;
  });
}

template <class Body> void WithEngineVoid(Body&& body) noexcept {
  GuardedVoid([&] {
    if (const EngineHandle engine = EngineCreatedOnDemand()) body(*engine);
  });
}

// Exports that need an existing engine: failure at once when there is none.
template <class Result, class Body>
Result WithExistingEngine(Result failure, Body&& body) noexcept {
  return Guarded(failure, [&]() -> Result {
    const EngineHandle engine = ExistingEngine();
    return engine ? body(*engine) : failure;
  });
}

template <class Body> void WithExistingEngineVoid(Body&& body) noexcept {
  GuardedVoid([&] {
    if (const EngineHandle engine = ExistingEngine()) body(*engine);
  });
}

// A text argument as the engine takes it: a null pointer is an empty text.
inline std::string_view TextArgument(const char* text) noexcept {
  return text ? std::string_view(text) : std::string_view();
}

} // namespace vntts::api
