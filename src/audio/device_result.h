// SPDX-License-Identifier: MIT
#pragma once
// Result codes of device operations. The numbers are the classic multimedia and wave error
// numbers that hosts and the message table know; every backend maps its own failures onto
// the one that fits.
#include <cstdint>

namespace vntts {

using DeviceResult = std::uint32_t;

namespace device_result {
inline constexpr DeviceResult kOk = 0;
inline constexpr DeviceResult kError = 1;         // unspecified failure
inline constexpr DeviceResult kBadDeviceId = 2;   // named device does not exist
inline constexpr DeviceResult kAllocated = 4;     // device busy
inline constexpr DeviceResult kInvalidHandle = 5; // nothing open / stream gone
inline constexpr DeviceResult kNoDriver = 6;      // no sound server or driver
inline constexpr DeviceResult kNoMemory = 7;
inline constexpr DeviceResult kNotSupported = 8; // e.g. pausing a device that cannot
inline constexpr DeviceResult kBadFormat = 32;   // sample format refused
inline constexpr DeviceResult kStillPlaying = 33;
inline constexpr DeviceResult kUnprepared = 34;
inline constexpr DeviceResult kSync = 35;
} // namespace device_result

} // namespace vntts
