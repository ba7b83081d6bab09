// SPDX-License-Identifier: MIT
#pragma once
// Records from the sound input into memory and saves the take as a WAV file: open with a
// format, start, pause, resume, stop, save, close. Each step returns 0 on success; the
// failures a user needs to know about are told through Messages.
#include <memory>
#include <string>

#include "audio/audio_system.h"
#include "audio/wave_format.h"
#include "core/messages.h"

namespace vntts {

class Recorder {
public:
  Recorder(AudioSystem& audio, Messages& messages) : audio_(audio), messages_(messages) {}
  ~Recorder() { Close(); }
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  // Opens the input, sets the format and starts capturing from an empty take.
  DeviceResult Start(const WaveFormat& format);
  DeviceResult Pause();
  DeviceResult Resume();
  // Stops capturing and keeps the take.
  DeviceResult Stop();
  // Writes the take (stopping first if needed) and closes. An empty path writes nothing.
  DeviceResult Save(const std::string& path);
  void Close();

  bool IsOpen() const { return source_ != nullptr; }
  // Waits until the take holds this many bytes (false when the time ran out first).
  bool WaitForBytes(std::size_t bytes, std::chrono::milliseconds timeout);
  // Keeps only the first bytes of the take (a timed recording ends exactly on time).
  void TrimTo(std::size_t bytes);

private:
  void Collect();

  AudioSystem& audio_;
  Messages& messages_;
  std::unique_ptr<AudioSource> source_;
  WaveFormat format_;
  std::vector<std::uint8_t> take_;
};

} // namespace vntts
