// The text editor gives back what it was given, but for what the user has changed.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>

#include "toolkit/qt/edit/editor.h"

namespace {

void WriteAll(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(bytes);
}

QByteArray ReadAll(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

}  // namespace

TEST(Editor, SavesWhatTheUserTypedAndNothingElse) {
  int argc = 1;
  char name[] = "test";
  char* argv[] = {name, nullptr};
  QApplication application(argc, argv);
  QTemporaryDir directory;
  const QString path = directory.filePath("Gr\u00f6\u00dfe & 100%.txt");
  QByteArray every;
  for (int byte = 0; byte < 256; ++byte) every += static_cast<char>(byte);
  const struct {
    QByteArray before, after;  // after "x" and a new line have been typed in front
  } cases[] = {
      {"", "x\n"},
      {"a\nb\n", "x\na\nb\n"},
      {"a\r\nb\r\n", "x\r\na\r\nb\r\n"},
      {"a\rb", "x\ra\rb"},
      {"a\nb\r\nc\n\n", "x\na\nb\r\nc\n\n"},
      {"\xEF\xBB\xBF\xC2\xB5m\n", "\xEF\xBB\xBFx\n\xC2\xB5m\n"},
      {"\xC2\xA0\xE2\x80\xA8\n", "x\n\xC2\xA0\xE2\x80\xA8\n"},
      {"\xB5m\n", "x\n\xB5m\n"},
      {every, "x\n" + every},
  };
  for (const auto& [before, after] : cases) {
    WriteAll(path, before);
    Editor editor;
    editor.setAttribute(Qt::WA_DeleteOnClose, false);
    ASSERT_TRUE(editor.Load(path));
    ASSERT_TRUE(editor.Save());
    EXPECT_EQ(ReadAll(path), before);
    auto* text = editor.findChild<QPlainTextEdit*>("text");
    QTest::keyClicks(text, "x");
    QTest::keyClick(text, Qt::Key_Return);
    EXPECT_TRUE(editor.isWindowModified());
    ASSERT_TRUE(editor.Save());
    EXPECT_FALSE(editor.isWindowModified());
    EXPECT_EQ(ReadAll(path).toHex(' '), after.toHex(' '));
  }
}
