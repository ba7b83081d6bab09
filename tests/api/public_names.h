// SPDX-License-Identifier: MIT
#pragma once
// The 46 public functions of libvntts.so with their fixed ordinals: the reference the symbol
// table, the version script and the Windows .def file are checked against.
#include <string_view>

namespace vntts::test {

struct PublicName {
  std::string_view name;
  int ordinal;
};

inline constexpr PublicName kPublicNames[] = {
    {"SpeakVN", 100},
    {"SpeakVNEx", 101},
    {"SpeakVNUTF8", 103},
    {"SpeakVNUTF8Ex", 104},
    {"SpeakVNASCII", 106},
    {"SpeakVNASCIIEx", 107},
    {"SpeakDlg", 110},
    {"PauseSpeak", 120},
    {"ResumeSpeak", 130},
    {"PauseResumeSpeak", 131},
    {"StopSpeak", 140},
    {"PlayWave", 150},
    {"PausePlayWave", 160},
    {"ResumePlayWave", 170},
    {"StopPlayWave", 180},
    {"LoadFileWave", 190},
    {"SaveFileWave", 191},
    {"SaveVNToWaveFile", 193},
    {"GetCountSample", 194},
    {"GetDataBuf", 195},
    {"GetWaveInfo", 196},
    {"GetBufOfWord", 197},
    {"AddVNEvent", 200},
    {"RemoveAllEvents", 210},
    {"Record", 220},
    {"RecordToFile", 221},
    {"ReleaseLib", 230},
    {"SetNotifyFunc", 240},
    {"GetVolume", 250},
    {"GetDefaultVolume", 251},
    {"MuteVolume", 252},
    {"SetVolume", 260},
    {"GetVolumeRange", 261},
    {"GetPitch", 270},
    {"GetDefaultPitch", 271},
    {"SetPitch", 280},
    {"GetPitchRange", 281},
    {"GetRateSpeech", 290},
    {"GetDefaultRateSpeech", 291},
    {"SetRateSpeech", 300},
    {"GetRateSpeechRange", 301},
    {"SetVNAudioFormat", 350},
    {"ResetAllToDefault", 352},
    {"EditDefinition", 360},
    {"Tools", 370},
    {"IsPlaying", 380},
};

inline bool IsPublicName(std::string_view name) {
  for (const auto& p : kPublicNames)
    if (p.name == name) return true;
  return false;
}

// Extensions beyond the 46 carry this prefix.
inline bool IsExtensionName(std::string_view name) {
  return name.starts_with("VN");
}

} // namespace vntts::test
