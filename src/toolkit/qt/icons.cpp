// The program's own icons: SVG on a grid of 24, lines of one width in the colour of the desktop's
// text.
#include "toolkit/qt/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <algorithm>
#include <iterator>

namespace {

struct Picture {
  const char* name;
  const char* shapes;
};

constexpr const char* kHead =
    "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 24 24' fill='none' stroke='%1' "
    "stroke-width='1.8' stroke-linecap='round' stroke-linejoin='round'>%2</svg>";

constexpr Picture kPictures[] = {
    {"open",
     "<path d='M3 19V6a1 1 0 0 1 1-1h5l2 3h8a1 1 0 0 1 1 1v2'/>"
     "<path d='M3 19l3-8h16l-3 8z'/>"},
    {"save", "<path d='M4 4h13l3 3v13H4z'/><path d='M8 4v5h7V4'/><path d='M7 20v-7h10v7'/>"},
    {"undo", "<path d='M8 5L4 9l4 4'/><path d='M4 9h9a6 6 0 0 1 0 11H8'/>"},
    {"redo", "<path d='M16 5l4 4-4 4'/><path d='M20 9h-9a6 6 0 0 0 0 11h5'/>"},
    {"zoomback",
     "<circle cx='10.5' cy='10.5' r='6.5'/><path d='M15.5 15.5L21 21'/>"
     "<path d='M14 10.5H7.5'/><path d='M10 8l-2.5 2.5L10 13'/>"},
    {"full",
     "<path d='M3 8V4h4'/><path d='M17 4h4v4'/><path d='M21 16v4h-4'/>"
     "<path d='M7 20H3v-4'/><path d='M5 17h3l2-8 2 8h2l1.5-5L17 17h2'/>"},
    {"background",
     "<path d='M3 12c2 0 2-1 3-1s2-8 3-8 2 9 3 9 1-5 2-5 1.500 6 3 6h4'/>"
     "<path d='M3 17c6 0 9 2 18 2' stroke-dasharray='2.500 3'/>"},
    {"search",
     "<path d='M3 20h3l3-11 3 11h3l2-6 2 6h2'/><path d='M9 2.500v4'/>"
     "<path d='M17 7v4'/><path d='M7.500 4.500L9 6.500l1.500-2'/>"
     "<path d='M15.500 9L17 11l1.500-2'/>"},
    {"peak",
     "<path d='M3 20c5 0 5-15 9-15s4 15 9 15'/><path d='M12 9v11' stroke-dasharray='2 2.500'/>"},
    {"pattern", "<path d='M3 14h2l2-10 2 10h3l2-7 2 7h5'/><path d='M3 20h4l1-1 2 2 2-2 2 1h7'/>"},
    {"index", "<path d='M4 8l8-4 8 4-8 4z'/><path d='M4 8v8l8 4V12'/><path d='M20 8v8l-8 4'/>"},
};

// A white sheet with three peaks on a line.
constexpr const char* kProgramPicture =
    "<svg xmlns='http://www.w3.org/2000/svg' width='128' height='128' viewBox='0 0 16 16'>\n"
    " <rect x='.5' y='.5' width='15' height='15' rx='1.5' fill='#ffffff' stroke='#8c929b'\n"
    "  stroke-width='.6'/>\n"
    " <path d='M2 13C4.3 13 3.6 6 4.7 6s.4 6.5 1.7 6.5S7.4 2.5 8.5 2.5s.7 10.2 2.1 "
    "10.2\n"
    "  .4-4.2 1.3-4.2S12.3 13 14 13' fill='#cfe3f5' stroke='#005aa0' stroke-width='1.1'\n"
    "  stroke-linecap='round' stroke-linejoin='round'/>\n"
    "</svg>\n";
constexpr int kProgramSizes[] = {16, 24, 32, 48, 64, 128, 256};

// Draws the shapes anew at each size, in the palette's colour of the moment.
class Engine : public QIconEngine {
 public:
  explicit Engine(const char* shapes) : shapes_(shapes) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const QColor colour = QGuiApplication::palette().color(group, QPalette::ButtonText);
    QSvgRenderer(QString(kHead).arg(colour.name(), shapes_).toUtf8()).render(painter, rect);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }
  QIconEngine* clone() const override { return new Engine(*this); }

 private:
  const char* shapes_;
};

}  // namespace

QIcon ToolIcon(const QString& name) {
  const auto found = std::ranges::find_if(
      kPictures, [&](const Picture& picture) { return name == QLatin1String(picture.name); });
  return found == std::end(kPictures) ? QIcon() : QIcon(new Engine(found->shapes));
}

QByteArray ProgramPicture() { return kProgramPicture; }

QPixmap ProgramPixmap(int size) {
  QPixmap picture(size, size);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  QSvgRenderer(ProgramPicture()).render(&painter);
  return picture;
}

QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : kProgramSizes) icon.addPixmap(ProgramPixmap(size));
  return icon;
}
