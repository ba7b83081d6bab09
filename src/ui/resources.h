// SPDX-License-Identifier: MIT
#pragma once
// The dialogs' resources as data: the string table and the names under which the button
// images are stored. The names are the stored resource names exactly, trailing mark included.
#include <array>
#include <optional>
#include <string_view>

namespace vntts::ui {

struct StringResource {
  int id;
  std::string_view text;
};

inline constexpr std::array kStringTable = {
    StringResource{32799, "Speak"},
    StringResource{32800, "Stop speak"},
    StringResource{32801, "Pause/Resume speak"},
    StringResource{32807, "Cancel"},
    StringResource{32808, "Open file"},
    StringResource{32809, "Volume control"},
    StringResource{32810, "Start record"},
    StringResource{32825, "Stop record"},
    StringResource{32826, "Pause/Resume record"},
};

// The text of string id, or nothing when the table has no such string.
constexpr std::optional<std::string_view> LoadString(int id) {
  for (const StringResource& s : kStringTable)
    if (s.id == id) return s.text;
  return std::nullopt;
}

// A bitmap button's images in the order they are loaded: up, down, focused, disabled. A set of
// two (the Open-file button) has no focused or disabled image.
struct BitmapSet {
  std::string_view up, down, focused, disabled;
};

inline constexpr BitmapSet kPlayBitmaps{"IDB_PLAYU,", "IDB_PLAYD,", "IDB_PLAYF,", "IDB_PLAYX."};
inline constexpr BitmapSet kStopBitmaps{"IDB_STOPU,", "IDB_STOPD,", "IDB_STOPF,", "IDB_STOPX."};
inline constexpr BitmapSet kPauseBitmaps{"IDB_PAUSEU,", "IDB_PAUSED,", "IDB_PAUSEF,",
                                         "IDB_PAUSEX."};
inline constexpr BitmapSet kCancelBitmaps{"IDB_CANCELU,", "IDB_CANCELD,", "IDB_CANCELF,",
                                          "IDB_CANCELX."};
inline constexpr BitmapSet kRecordBitmaps{"IDB_RECORDU,", "IDB_RECORDD,", "IDB_RECORDF,",
                                          "IDB_RECORDX."};
inline constexpr BitmapSet kOpenFileBitmaps{"IDB_OPEN_FILEU", "IDB_OPEN_FILED", "", ""};

} // namespace vntts::ui
