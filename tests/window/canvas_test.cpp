// The plot: painting, rubber band, keys, dropped files, files picked and written.
#include <gtest/gtest.h>

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPrintDialog>
#include <QPrinter>
#include <fstream>

#include "shell/shell.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/painter.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/workspace.h"

namespace {

int DarkPixels(const QImage& image, QRect part) {
  int dark = 0;
  for (int y = part.top(); y <= part.bottom(); ++y)
    for (int x = part.left(); x <= part.right(); ++x) dark += qGray(image.pixel(x, y)) < 100;
  return dark;
}

void Drop(const QList<QUrl>& urls) {
  QMimeData data;
  data.setUrls(urls);
  const Qt::DropActions offered = Qt::MoveAction | Qt::CopyAction;
  QDragEnterEvent enter({10, 10}, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_EQ(enter.proposedAction(), Qt::MoveAction);
  QApplication::sendEvent(Root(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop({10, 10}, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
  QApplication::sendEvent(Root(), &drop);
  EXPECT_TRUE(drop.isAccepted());
  for (const QDropEvent* event : {static_cast<QDropEvent*>(&enter), &drop})
    EXPECT_EQ(event->dropAction(), Qt::CopyAction) << "a move would remove the file";
}

QUrl Url(const std::string& path) { return QUrl::fromLocalFile(QString::fromStdString(path)); }

QString BoxText() { return FindA<QMessageBox>("box")->text(); }

DisplayList Noise(int n) {
  DisplayList list;
  list.strokes.push_back({{.width = 2}, 0, static_cast<std::size_t>(n)});
  unsigned random = 1;
  for (int i = 0; i < n; ++i) {
    random = random * 1664525u + 1013904223u;
    list.points.push_back(
        {1000.0f * i / n, 100 + (random >> 16) % 800 * (i % 50 == 0 ? 1.0f : 0.3f)});
  }
  return list;
}

QImage Painted(const DisplayList& list, Detail detail) {
  QImage image(700, 400, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  PaintList(painter, list, image.size(), 1, detail);
  return image;
}

}  // namespace

TEST(Canvas, ThinningKeepsWhatIsSeen) {
  const DisplayList list = Noise(20000);
  const QImage whole = Painted(list, Detail::EveryPoint),
               thinned = Painted(list, Detail::PerColumn);
  // What is dark in one is dark in the other, or next to it.
  for (const auto& [one, other] : {std::pair(whole, thinned), std::pair(thinned, whole)}) {
    int dark = 0, alone = 0;
    for (int x = 1; x + 1 < one.width(); ++x)
      for (int y = 1; y + 1 < one.height(); ++y) {
        if (qGray(one.pixel(x, y)) > 100) continue;
        ++dark;
        alone += DarkPixels(other, {x - 1, y - 1, 3, 3}) == 0;
      }
    EXPECT_GT(dark, 10000);
    EXPECT_LT(alone, dark / 200);
  }
}

// Two by two cells from (100, 100) to (600, 300) of 700 by 400 pixels, cut off at 550.
TEST(Canvas, CellsLieInOrderAndKeepTheirEdges) {
  DisplayList list;
  list.units = {0, 0, 700, 400};
  LevelColours colours{};
  for (std::uint32_t level = 1; level < 4; ++level) colours[level] = level * 50;
  list.strokes = {{{.width = 10}, 0, 2}, {{.width = 10}, 2, 2}};
  list.points = {{50, 150}, {650, 150}, {50, 250}, {650, 250}};
  const RasterCells cells{2, 2, {1, 2, 3, 0}};
  list.rasters.push_back({std::make_shared<RasterCells>(cells),
                          colours,
                          {100, 100, 600, 300},
                          {100, 100, 550, 300},
                          1});
  for (const Detail detail : {Detail::EveryPoint, Detail::PerColumn}) {
    const QImage image = Painted(list, detail);
    const auto at = [&](int x, int y) { return image.pixel(x, 399 - y); };
    EXPECT_EQ(at(80, 150), qRgb(0, 0, 0));
    EXPECT_EQ(at(200, 150), qRgb(50, 0, 0)) << "over the first stroke";
    EXPECT_EQ(at(200, 250), qRgb(0, 0, 0)) << "under the second";
    EXPECT_EQ(at(349, 199), qRgb(50, 0, 0));
    EXPECT_EQ(at(350, 199), qRgb(100, 0, 0));
    EXPECT_EQ(at(349, 200), qRgb(150, 0, 0));
    EXPECT_EQ(at(350, 200), qRgb(255, 255, 255)) << "level 0";
    EXPECT_EQ(at(99, 110), qRgb(255, 255, 255));
    EXPECT_EQ(at(549, 110), qRgb(100, 0, 0));
    EXPECT_EQ(at(550, 110), qRgb(255, 255, 255));
  }
}

TEST(Canvas, SheetIsWhiteWithHintThenCurveOfTheFileDropped) {
  const std::string file = MakePattern("curve.xy"), unknown = Place() + "/note.doc";
  std::ofstream(unknown) << "no numbers here\n";
  QPalette dark;
  RunWith([&]() -> Script {
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    QApplication::setPalette(dark);
    const QImage empty = Sheet();
    EXPECT_EQ(empty.pixel(2, 2), qRgb(255, 255, 255));
    EXPECT_GT(DarkPixels(empty, {OnCanvas(0.2, 0.45), OnCanvas(0.8, 0.55)}), 100) << "no hint";

    Drop({Url(unknown)});
    co_await Shown("box");
    EXPECT_TRUE(BoxText().startsWith("Unrecognized file type\n"));
    EXPECT_EQ(FindA<QMessageBox>("box")->icon(), QMessageBox::Critical);
    Press("Escape");
    co_await Idle();
    EXPECT_EQ(ws.npts(1), 0);

    Drop({Url(file), Url(Place() + "/second.xy")});
    co_await Until{[] { return ws.npts(1) == 1000; }, "the pattern"};
    co_await Idle();
    EXPECT_EQ(Root()->windowTitle(), "curve - Quillagram");
    const QImage sheet = Sheet();
    EXPECT_EQ(sheet.pixel(2, 2), qRgb(255, 255, 255));
    // The peak at 30 degrees, half way up, and nothing dark beside it.
    const QPoint peak = OnPlot(30, 500);
    EXPECT_GT(DarkPixels(sheet, {peak - QPoint(8, 3), peak + QPoint(8, 3)}), 4);
    EXPECT_EQ(DarkPixels(sheet, {peak - QPoint(40, 3), peak - QPoint(15, -3)}), 0);
  });
}

TEST(Canvas, RubberBandZoomsAndEscapeBreaksItOff) {
  RunOn("zoom.xy", []() -> Script {
    QWidget* canvas = Root()->canvas;
    const float full = ws.viewxmax - ws.viewxmin;
    QTest::mousePress(canvas, Qt::LeftButton, {}, OnCanvas(0.3, 0.2));
    co_await Until{[] { return !ReadyForCommands(); }, "the band"};
    QTest::mouseMove(canvas, OnCanvas(0.6, 0.8));
    co_await Until{[] { return true; }};
    const QRgb inside = Sheet().pixel(OnCanvas(0.4, 0.3));
    EXPECT_NE(inside, qRgb(255, 255, 255)) << "the band is not seen";
    QTest::keyClick(canvas, Qt::Key_Escape);
    co_await Idle();
    QTest::mouseRelease(canvas, Qt::LeftButton, {}, OnCanvas(0.6, 0.8));
    co_await Idle();
    EXPECT_EQ(ws.viewxmax - ws.viewxmin, full);
    EXPECT_TRUE(LastDeed().starts_with("open "));

    // From right to left, and the release comes before the program has taken the press.
    QTest::mousePress(canvas, Qt::LeftButton, {}, OnCanvas(0.6, 0.2));
    QTest::mouseRelease(canvas, Qt::LeftButton, {}, OnCanvas(0.3, 0.8));
    co_await Until{[&] { return ws.viewxmax - ws.viewxmin < 0.7f * full; }, "the zoom"};
    co_await Idle();
    EXPECT_TRUE(LastDeed().starts_with("band ")) << LastDeed();
    const float low = ws.viewxmin, high = ws.viewxmax;
    Press("Right");
    co_await Until{[&] { return ws.viewxmin == high; }, "the next page"};
    Press("F1");
    co_await Until{[&] { return ws.viewxmax - ws.viewxmin == full; }, "the full pattern"};
    EXPECT_LT(low, high);
  });
}

TEST(Canvas, SelectorTakesAwkwardNames) {
  const std::string file = MakePattern(
      "Pr\xC3\xBC"
      "fung 'a\" & b.XY");
  RunWith([&]() -> Script {
    Press("Shift+X");
    co_await Shown("selector");
    auto* selector = FindA<QFileDialog>("selector");
    EXPECT_EQ(selector->nameFilters().size(), 2);
    EXPECT_EQ(selector->nameFilters().last(), "All files (*)");
    Type(QString::fromStdString(file));
    Press("Return");
    co_await Until{[] { return ws.npts(1) == 1000; }, "the pattern"};
    co_await Idle();
    const auto* recent = Root()->findChild<QAction*>("menu40022");
    EXPECT_EQ(recent->text().count("&&"), 1);
    EXPECT_EQ(recent->toolTip().toStdString(), file);
    EXPECT_EQ(Root()->findChild<QAction*>("menu40006")->toolTip(), "Exit");
  });
}

TEST(Canvas, PrintsWithoutAPrinterAndReportsWhatCannotBeWritten) {
  RunOn("page.xy", []() -> Script {
    for (const char* target : {"/out.pdf", "/none/out.pdf"}) {
      Pick(40005);
      co_await Shown("printdialog");
      auto* dialog = FindA<QPrintDialog>("printdialog");
      EXPECT_EQ(dialog->printer()->outputFormat(), QPrinter::PdfFormat);
      EXPECT_TRUE(dialog->printer()->outputFileName().endsWith("/page.pdf"));
      const QString path = QString::fromStdString(Place() + target);
      dialog->printer()->setOutputFileName(path);
      dialog->done(QDialog::Accepted);
      if (std::string(target) == "/out.pdf") {
        co_await Idle();
        QFile pdf(path);
        EXPECT_TRUE(pdf.open(QIODevice::ReadOnly));
        const QByteArray bytes = pdf.readAll();
        EXPECT_TRUE(bytes.startsWith("%PDF-"));
        EXPECT_GT(bytes.size(), 4000) << "all 1000 points";
        EXPECT_EQ(LastDeed(), "file \"" + Place() + target + '"');
      } else {
        co_await Shown("box");
        EXPECT_TRUE(BoxText().startsWith("Cannot print")) << BoxText().toStdString();
        Press("Return");
        co_await Idle();
      }
    }
  });
}
