// SPDX-License-Identifier: MIT
// Draws the dialogs' button images and the Speaker icon into resources/ui. The images are ours,
// drawn here from shapes, and are committed; run this after changing a drawing:
//   vntts_draw_bitmaps resources/ui
// Each button has four states (up, down, focused, disabled) at 40 x 20 pixels; the Open-file
// button has two at 24 x 22. As in the classic button bitmaps, the images are drawn in a few
// flat colours and stored with a palette, except the Speak button's up state: the window's
// main action gets a shaded, smoothed face of its own, and with it the larger file.
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QList>
#include <QPainter>
#include <QPainterPath>
#include <cstdio>
#include <functional>
#include <string>

namespace {

enum class State { kUp, kDown, kFocused, kDisabled };

using Glyph = std::function<void(QPainter&, QRectF, QColor)>;

const QColor kFace(0xE4, 0xE4, 0xE0);
const QColor kLight(0xFF, 0xFF, 0xFF);
const QColor kShadow(0x80, 0x80, 0x80);
const QColor kDark(0x30, 0x30, 0x30);
const QColor kFocus(0x1E, 0x5A, 0xC8);
const QColor kGreyGlyph(0xA0, 0xA0, 0xA0);

void Bevel(QPainter& p, const QRect& r, bool sunken) {
  const QColor top_left = sunken ? kDark : kLight;
  const QColor bottom_right = sunken ? kLight : kDark;
  p.setPen(top_left);
  p.drawLine(r.topLeft(), r.topRight() - QPoint(1, 0));
  p.drawLine(r.topLeft(), r.bottomLeft() - QPoint(0, 1));
  p.setPen(bottom_right);
  p.drawLine(r.bottomLeft(), r.bottomRight());
  p.drawLine(r.topRight(), r.bottomRight());
  p.setPen(sunken ? kFace : kShadow);
  p.drawLine(r.bottomLeft() + QPoint(1, -1), r.bottomRight() - QPoint(1, 1));
  p.drawLine(r.topRight() + QPoint(-1, 1), r.bottomRight() - QPoint(1, 1));
}

QImage Button(QSize size, State state, const Glyph& glyph, QColor colour, bool shaded) {
  QImage image(size, QImage::Format_ARGB32);
  image.fill(kFace);
  QPainter p(&image);
  const QRect r(0, 0, size.width(), size.height());
  if (shaded && state == State::kUp) {
    QLinearGradient face(0, 0, 0, size.height());
    face.setColorAt(0, QColor(0xF4, 0xFB, 0xF2));
    face.setColorAt(0.5, QColor(0xD2, 0xEC, 0xCB));
    face.setColorAt(1, QColor(0xA8, 0xD4, 0x9C));
    p.fillRect(r, face);
  }
  Bevel(p, r, state == State::kDown);
  if (state == State::kFocused) {
    p.setPen(QPen(kFocus, 1, Qt::DotLine));
    p.drawRect(r.adjusted(3, 3, -4, -4));
  }
  const bool rich = shaded && state == State::kUp;
  p.setRenderHint(QPainter::Antialiasing, rich);
  const double inset = size.height() * 0.25;
  QRectF area(0, 0, size.height() - 2 * inset, size.height() - 2 * inset);
  area.moveCenter(QPointF(size.width() / 2.0, size.height() / 2.0));
  if (state == State::kDown) area.translate(1, 1);
  if (state == State::kDisabled) {
    glyph(p, area.translated(1, 1), kLight); // an etched shape, as disabled controls look
    glyph(p, area, kGreyGlyph);
  } else {
    glyph(p, area, colour);
  }
  p.end();
  if (rich) return image;
  // A palette of exactly the colours used.
  QList<QRgb> colours;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (!colours.contains(image.pixel(x, y))) colours.push_back(image.pixel(x, y));
  return image.convertToFormat(QImage::Format_Indexed8, colours);
}

void Play(QPainter& p, QRectF a, QColor c) {
  QPainterPath path;
  path.moveTo(a.left() + a.width() * 0.15, a.top());
  path.lineTo(a.right(), a.center().y());
  path.lineTo(a.left() + a.width() * 0.15, a.bottom());
  path.closeSubpath();
  p.fillPath(path, c);
}

void Stop(QPainter& p, QRectF a, QColor c) {
  p.fillRect(a.adjusted(1, 1, -1, -1), c);
}

void Pause(QPainter& p, QRectF a, QColor c) {
  const double bar = a.width() * 0.32;
  p.fillRect(QRectF(a.left() + 1, a.top(), bar, a.height()), c);
  p.fillRect(QRectF(a.right() - 1 - bar, a.top(), bar, a.height()), c);
}

void Cancel(QPainter& p, QRectF a, QColor c) {
  p.setPen(QPen(c, a.width() * 0.22, Qt::SolidLine, Qt::RoundCap));
  const QRectF x = a.adjusted(1, 1, -1, -1);
  p.drawLine(x.topLeft(), x.bottomRight());
  p.drawLine(x.topRight(), x.bottomLeft());
}

void Record(QPainter& p, QRectF a, QColor c) {
  p.setPen(Qt::NoPen);
  p.setBrush(c);
  p.drawEllipse(a.adjusted(0.5, 0.5, -0.5, -0.5));
}

void Folder(QPainter& p, QRectF a, QColor c) {
  QPainterPath path;
  const QRectF body = a.adjusted(-2, a.height() * 0.2, 2, 0);
  path.moveTo(body.bottomLeft());
  path.lineTo(body.topLeft() - QPointF(0, a.height() * 0.2));
  path.lineTo(body.left() + body.width() * 0.4, body.top() - a.height() * 0.2);
  path.lineTo(body.left() + body.width() * 0.5, body.top());
  path.lineTo(body.topRight());
  path.lineTo(body.bottomRight());
  path.closeSubpath();
  p.fillPath(path, c);
  p.setPen(QPen(c.darker(160), 1));
  p.drawPath(path);
}

QImage SpeakerIcon(int size) {
  QImage image(size, size, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  QPainter p(&image);
  p.setRenderHint(QPainter::Antialiasing);
  p.scale(size / 32.0, size / 32.0);
  QPainterPath cone;
  cone.moveTo(3, 12);
  cone.lineTo(9, 12);
  cone.lineTo(16, 5);
  cone.lineTo(16, 27);
  cone.lineTo(9, 20);
  cone.lineTo(3, 20);
  cone.closeSubpath();
  QLinearGradient body(0, 5, 0, 27);
  body.setColorAt(0, QColor(0x3C, 0x8D, 0x2F));
  body.setColorAt(1, QColor(0x1F, 0x5C, 0x17));
  p.fillPath(cone, body);
  p.setPen(QPen(QColor(0xD9, 0x3B, 0x26), 2.2, Qt::SolidLine, Qt::RoundCap));
  p.setBrush(Qt::NoBrush);
  for (int wave = 0; wave < 3; ++wave) {
    const double r = 5 + wave * 4.5;
    p.drawArc(QRectF(16 - r, 16 - r, 2 * r, 2 * r), -45 * 16, 90 * 16);
  }
  return image;
}

bool Save(const QImage& image, const std::string& path) {
  if (image.save(QString::fromStdString(path), "PNG", 9)) return true;
  std::fprintf(stderr, "cannot write %s\n", path.c_str());
  return false;
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: vntts_draw_bitmaps RESOURCES_UI_FOLDER\n", stderr);
    return 2;
  }
  QGuiApplication app(argc, argv);
  const std::string out = argv[1];
  struct ButtonImage {
    const char* file;
    Glyph glyph;
    QColor colour;
    bool shaded;
  };
  const ButtonImage buttons[] = {
      {"play", Play, QColor(0x1F, 0x7A, 0x1F), true},
      {"stop", Stop, QColor(0x20, 0x30, 0x80), false},
      {"pause", Pause, QColor(0x20, 0x30, 0x80), false},
      {"cancel", Cancel, QColor(0xB0, 0x20, 0x20), false},
      {"record", Record, QColor(0xD0, 0x18, 0x18), false},
  };
  const std::pair<State, const char*> states[] = {{State::kUp, "up"},
                                                  {State::kDown, "down"},
                                                  {State::kFocused, "focused"},
                                                  {State::kDisabled, "disabled"}};
  bool ok = true;
  for (const ButtonImage& b : buttons)
    for (const auto& [state, name] : states)
      ok &= Save(Button({40, 20}, state, b.glyph, b.colour, b.shaded),
                 out + "/bitmaps/" + b.file + "_" + name + ".png");
  ok &= Save(Button({24, 22}, State::kUp, Folder, QColor(0xE8, 0xB8, 0x30), false),
             out + "/bitmaps/open_file_up.png");
  ok &= Save(Button({24, 22}, State::kDown, Folder, QColor(0xE8, 0xB8, 0x30), false),
             out + "/bitmaps/open_file_down.png");
  ok &= Save(SpeakerIcon(32), out + "/icons/speaker_32.png");
  ok &= Save(SpeakerIcon(64), out + "/icons/speaker_64.png");
  return ok ? 0 : 1;
}
