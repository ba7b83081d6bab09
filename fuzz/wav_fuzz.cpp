// SPDX-License-Identifier: MIT
// Any bytes given to the WAV loader end in a result and at most one message, never a crash,
// a hang or an oversized allocation; a loaded buffer is consistent with its format.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "audio/wave_buffer.h"

namespace {

class CountingMessages final : public vntts::Messages {
public:
  void Report(std::string_view, std::string_view, vntts::MessageIcon) override { ++count; }
  int count = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CountingMessages messages;
  vntts::WaveBuffer buffer(messages);
  const int result = buffer.LoadFromMemory({data, size}, "fuzz.wav");
  if (result == 0) {
    if (messages.count != 0 || buffer.data_length() == 0 || buffer.data_length() > size ||
        buffer.FrameBytes() == 0)
      std::abort();
    if (buffer.events().size() * vntts::EventRecord::kBytes > size) std::abort();
    (void)buffer.SampleCount();
  } else if (result != 1 || messages.count != 1) {
    std::abort();
  }
  return 0;
}
