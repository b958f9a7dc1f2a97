// The printer, and pictures of the window.
#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImageWriter>
#include <QMimeData>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <memory>

#include "toolkit/common.h"
#include "toolkit/journal.h"
#include "toolkit/qt/painter.h"
#include "toolkit/qt/window.h"
#include "toolkit/vectorpath.h"  // for WriteWholeFile

namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kThinOnPaper = 0.18;  // millimetres
constexpr int kJpegQuality = 92;

// As the user has set it up for the job to come.
std::unique_ptr<QPrinter> printer;

QString JobName(const std::string& job) {
  const QString name = QString::fromStdString(job).replace('/', '_').trimmed();
  return name.isEmpty() ? QString("quillagram") : name;
}

// A page that was cut short, by a full disk say, lacks the end mark.
bool IsWholePdf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return false;
  file.seek(std::max<qint64>(0, file.size() - 16));
  return file.readAll().contains("%%EOF");
}

// A transcript has no printer: what went to one goes to a file there.
void JournalPrinter(const std::string& job) {
  const QString file = printer->outputFileName();
  const QString name = file.isEmpty() ? JobName(job) + ".pdf" : file;
  const std::string path = QFile::encodeName(QDir::current().absoluteFilePath(name)).toStdString();
  JournalFiles({&path, 1});
}

// The drawing in the middle of the sheet at its true size, or smaller where it does not fit.
void PaintPage(QPainter& painter, const DisplayList& list) {
  const QRectF page = printer->pageLayout().fullRect(QPageLayout::Millimeter);
  const double fit = std::min({1.0, page.width() / PaperWidth, page.height() / PaperHeight});
  const QPointF corner = page.center() - QPointF(PaperWidth, PaperHeight) * fit / 2;
  const double dots = printer->resolution() / kMillimetresPerInch;
  painter.translate(corner * dots);
  PaintList(painter, list, QSizeF(PaperWidth, PaperHeight) * fit * dots, kThinOnPaper * fit * dots,
            Detail::EveryPoint);
}

// The drawing pixel for pixel as the window shows it.
QImage PictureOf(const DisplayList& list) {
  const Canvas& canvas = *Root()->canvas;
  const double ratio = canvas.devicePixelRatioF();
  QImage image((QSizeF(canvas.size()) * ratio).toSize(), QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  PaintList(painter, list, image.size(), canvas.ThinLine() * ratio, Detail::PerColumn);
  return image;
}

// The bytes of a file; none for a format that there is not.
QByteArray Encoded(const QImage& image, const QByteArray& format) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImageWriter writer(&buffer, format);
  if (format != "png") writer.setQuality(kJpegQuality);  // of a .png it would be the size
  return writer.write(image) ? bytes : QByteArray();
}

}  // namespace

namespace frontend {

bool PrintDialog(const std::string& job) {
  printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
  printer->setFullPage(true);
  if (QPrinterInfo::availablePrinterNames().isEmpty()) {
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(QDir::current().filePath(JobName(job) + ".pdf"));
  }
  QPrintDialog dialog(printer.get(), FrontWindow());
  dialog.setObjectName("printdialog");
  if (dialog.exec() == QDialog::Accepted) {
    JournalPrinter(job);
    return true;
  }
  JournalFiles({});
  printer.reset();
  return false;
}

bool Print(const DisplayList& list, const std::string& job) {
  if (!printer) return false;
  printer->setFullPage(true);
  printer->setDocName(JobName(job));
  QPainter painter;
  if (!painter.begin(printer.get())) return false;
  PaintPage(painter, list);
  const bool painted = painter.end() && printer->printerState() != QPrinter::Error;
  const QString file = printer->outputFileName();
  printer.reset();
  if (painted && (file.isEmpty() || IsWholePdf(file))) return true;
  if (!file.isEmpty()) KeepFileReason(file.toStdString() + " cannot be written");
  return false;
}

// Written as all other files are: Qt's own would put half of one in its place on a full disk.
bool SaveImage(const DisplayList& list, const std::string& path, const std::string& format) {
  if (!Root()) return false;
  const QByteArray bytes = Encoded(PictureOf(list), QByteArray::fromStdString(format).mid(1));
  KeepFileReason("");
  return !bytes.isEmpty() && WriteWholeFile(path, bytes.toStdString());
}

void CopyPicture(const DisplayList& list, const std::string& svg) {
  if (!Root()) return;
  const QImage image = PictureOf(list);
  auto* data = new QMimeData;
  data->setImageData(image);
  data->setData("image/png", Encoded(image, "png"));
  data->setData("image/svg+xml", QByteArray::fromStdString(svg));
  QGuiApplication::clipboard()->setMimeData(data);
}

}  // namespace frontend
