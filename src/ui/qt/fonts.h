// SPDX-License-Identifier: MIT
#pragma once
// Fonts by the names the templates give them. Those Windows faces are rarely installed; each
// falls back to a face of the same kind with full Vietnamese coverage (DejaVu or Noto from
// Debian), so that every letter of the edit box and of the captions can be drawn.
#include <QFont>
#include <string_view>

namespace vntts::ui {

// A template's font: its face at its point size, measured at 96 pixels per inch as the
// templates were laid out.
QFont TemplateFont(std::string_view face, int point_size);

// The edit boxes' font: "VNI-Centur", 19 pixels from top to bottom, normal weight.
QFont EditFont();

// The face that TemplateFont uses for a name.
QString ResolveFace(std::string_view face);

} // namespace vntts::ui
