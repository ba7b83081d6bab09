// SPDX-License-Identifier: MIT
#pragma once
// Whether a window system can be reached before anything asks Qt for one: Qt ends the process
// when its platform cannot connect, and a library must never do that to its host.
#include <string>

namespace vntts::ui {

enum class WindowSystem {
  kNone,        // nothing reachable (*why says what is missing)
  kEnvironment, // QT_QPA_PLATFORM chose a platform that needs no server (offscreen, vnc...)
  kX11,         // the X server of DISPLAY accepts a connection
  kWayland,     // the socket of WAYLAND_DISPLAY exists
};

// The window system to show windows on. X11 comes first when both are there: it needs no
// plugin beyond Qt's base packages.
WindowSystem ReachableWindowSystem(std::string* why);

} // namespace vntts::ui
