// What desktops are told: types of files and the program's icon.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMimeDatabase>
#include <QTemporaryDir>

#include "patternfiles/patternfiles.h"
#include "toolkit/qt/icons.h"

namespace {

const QString kSource = QUILLAGRAM_SOURCE;

QByteArray ReadAll(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  return file.readAll();
}

}  // namespace

// A desktop that looks at names first knows the types that hardly anything else has by them, and
// offers the program for what the content tells of the others; no file of others is claimed.
TEST(Packaging, TypesOfPatternFiles) {
  QTemporaryDir data;
  qputenv("XDG_DATA_HOME", data.path().toUtf8());
  ASSERT_TRUE(QDir(data.path()).mkpath("mime/packages"));
  ASSERT_TRUE(QFile::copy(kSource + "/packaging/quillagram-types.xml",
                          data.filePath("mime/packages/quillagram.xml")));
  const QMimeDatabase types;
  const QString entry = ReadAll(kSource + "/packaging/quillagram.desktop");
  const QStringList offered = entry.section("MimeType=", 1).section('\n', 0, 0).split(';');

  const auto ofname = [&](const QString& name) {
    return types.mimeTypeForFile(name, QMimeDatabase::MatchExtension).name();
  };
  const auto ofcontent = [&](const QByteArray& content) {
    return types.mimeTypeForData(content).name();
  };
  const QStringList bycontent = {"txt", "uxd", "cif", "dat", "udf"};
  const QStringList byname = {"xy", "gdf", "uxd", "xrdml", "udf", "chi"};
  for (const PatternFormat& format : PatternFormats()) {
    const QString extension = format.extension;
    const QString type =
        extension == "xrdml" ? "application/x-xrdml" : "text/x-powder-" + extension;
    EXPECT_EQ(offered.count(type), 1) << format.extension;
    const QDir examples(kSource + "/examples");
    const QString example = examples.filePath(examples.entryList({"*." + extension}).value(0));
    if (bycontent.contains(extension)) {
      EXPECT_TRUE(offered.contains(ofcontent(ReadAll(example)))) << format.extension;
    }
    EXPECT_EQ(offered.contains(ofname("pattern." + extension)), byname.contains(extension))
        << format.extension;
  }
  for (const char* name : {"a.xye", "a.ras", "a.rasx", "a.brml"})
    EXPECT_TRUE(offered.contains(ofname(name))) << name;
  EXPECT_TRUE(offered.contains(ofcontent("RAW1.01" + QByteArray(200, '\0'))));
  for (const QByteArray& other :
       {QByteArray("Dear Sir,\n"), QByteArray("data_x\n_cell_length_a 5.4\n"),
        QByteArray("   3.000     297     13.2\n").repeated(40), QByteArray(200, '\0')})
    EXPECT_FALSE(offered.contains(ofcontent(other))) << other.left(30).toStdString();
}

TEST(Packaging, TheIconIsTheWindows) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  int argc = 0;
  QGuiApplication application(argc, nullptr);
  const QString icons = kSource + "/packaging/icons/quillagram";
  EXPECT_EQ(ReadAll(icons + ".svg"), ProgramPicture()) << "run makeicons";
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    const QImage image(icons + QString("-%1.png").arg(size));
    EXPECT_EQ(image.size(), QSize(size, size));
    // The corners of the sheet are round, and it is white above the lowest peak.
    EXPECT_LT(image.pixelColor(0, 0).alpha(), 255) << size;
    EXPECT_GT(image.pixelColor(size * 3 / 4, size / 4).lightness(), 250) << size;
  }
}
