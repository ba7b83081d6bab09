// SPDX-License-Identifier: MIT
// vntts play: play a WAV file through the sound system (VNTTS_AUDIO=pulse|alsa|null picks it).
#include <cstdio>
#include <optional>
#include <string>

#include "audio/wave_device.h"
#include "command.h"
#include "command_messages.h"
#include "core/messages.h"
#include "option_parser.h"

namespace vntts::cli {
namespace {

constexpr CommandSyntax kSyntax{"play", "FILE.wav", "Plays a WAV file on the sound device."};

enum : int { kLoop = 256, kVolume, kEvents };

constexpr OptionSpec kOptions[] = {
    {kLoop, 0, "loop", "N", "play the file N times"},
    {kVolume, 0, "volume", "N", "volume 0 to 65535 on both channels"},
    {kEvents, 0, "events", nullptr, "print the file's events as they fire"},
};

} // namespace

int RunPlay(Args args) {
  const ParsedArgs parsed = ParseArgs(kSyntax, kOptions, args);
  if (parsed.exit_status) return *parsed.exit_status;
  std::uint32_t loops = 1;
  std::optional<std::uint32_t> volume;
  bool events = false;
  for (const auto& o : parsed.options) {
    if (o.id == kEvents) {
      events = true;
      continue;
    }
    const auto n = NumberValue(kSyntax, o, o.id == kLoop ? 1 : 0, o.id == kLoop ? 1000000 : 65535);
    if (!n) return kExitUsage;
    (o.id == kLoop ? loops : volume.emplace()) = static_cast<std::uint32_t>(*n);
  }
  if (parsed.operands.size() != 1) return UsageError(kSyntax, "give one WAV file");

  CommandMessages messages;
  WaveDevice device(messages);
  if (device.Load(parsed.operands.front()) != 0) return kExitFailed;
  device.SetLoopCount(loops);
  if (volume) device.SetVolume(*volume << 16 | *volume);
  if (events)
    device.SetNotify([](const EventRecord& e) {
      std::printf("event kind=%u position=%u text=%u+%u\n", e.kind, e.position, e.text_start,
                  e.text_length);
      std::fflush(stdout);
    });
  return device.Play() == device_result::kOk && !messages.Failed() ? kExitDone : kExitFailed;
}

} // namespace vntts::cli
