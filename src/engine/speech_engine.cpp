#include "engine/speech_engine.h"

#include <utility>

namespace vntts {
namespace {

constexpr SettingRange kVolumeRange{0, 65535};
constexpr SettingRange kRateRange{0, 5000};
constexpr std::uint32_t kUnitPitch = 0x10000; // 1.0 in 16.16 fixed point

} // namespace

SpeechEngine::SpeechEngine(Messages& messages, DataFolder data_folder)
    : messages_(messages), data_folder_(std::move(data_folder)) {}

SpeechEngine::~SpeechEngine() = default;

std::uint32_t SpeechEngine::GetDefaultVolume() const {
  return (kVolumeRange.maximum - kVolumeRange.minimum) / 5;
}

SettingRange SpeechEngine::GetVolumeRange() const {
  return kVolumeRange;
}

std::uint32_t SpeechEngine::GetDefaultPitch() const {
  return kUnitPitch;
}

std::uint32_t SpeechEngine::GetRateSpeech() const {
  return kRateRange.minimum + kRateRange.maximum - slowness_;
}

std::uint32_t SpeechEngine::GetDefaultRateSpeech() const {
  return kRateRange.maximum;
}

std::uint32_t SpeechEngine::SetRateSpeech(std::uint32_t rate) {
  slowness_ = kRateRange.minimum + kRateRange.maximum - rate; // wraps for rate > 5000, on purpose
  return kRateRange.maximum;
}

SettingRange SpeechEngine::GetRateSpeechRange() const {
  return kRateRange;
}

} // namespace vntts
