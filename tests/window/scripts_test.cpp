// Scripts: the dialog by mouse and keys, and a run that holds its boxes.
#include <gtest/gtest.h>

#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <fstream>

#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/workspace.h"

namespace {

constexpr int kCreate = 40133, kRun = 40136;

void WriteText(const std::string& name, const std::string& text) {
  std::ofstream(Place() + "/" + name) << text;
}

}  // namespace

TEST(Scripts, TheDialogFitsASmallScreenAndEnablesWhatIsTicked) {
  RunOn("script.xy", []() -> Script {
    Pick(kCreate);
    co_await Shown("dialog137");
    const QWidget* dialog = Find("dialog137");
    EXPECT_TRUE(dialog->screen()->availableGeometry().contains(dialog->frameGeometry()));
    EXPECT_EQ(dialog->findChildren<QScrollArea*>().size(), 0);
    EXPECT_LT(dialog->width(), 760) << "for a screen of 800 pixels";
    EXPECT_FALSE(Find("field1259")->isEnabled());
    QTest::mouseClick(Find("field1012"), Qt::LeftButton, {}, {8, 10});
    co_await Until{[] { return Find("field1259")->isEnabled(); }, "the limits"};
    EXPECT_FALSE(Find("field1258")->isEnabled());

    // No name, no script.
    QTest::mouseClick(Find("button1"), Qt::LeftButton);
    co_await Shown("box");
    Press("Return");
    co_await Until{[] { return !QApplication::activeModalWidget(); }, "the dialog"};
    QTest::mouseClick(Find("button1255"), Qt::LeftButton);
    co_await Shown("selector");
    Type("mine");
    Press("Return");
    co_await Until{[] { return !QApplication::activeModalWidget(); }, "the dialog"};
    QTest::mouseClick(Find("button1"), Qt::LeftButton);
    co_await Idle();
    EXPECT_TRUE(ws.scriptpath.ends_with("/mine.scp")) << ws.scriptpath;
    EXPECT_EQ(ws.scriptusetrun, 1);
  });
}

// One box at the end tells of them all.
TEST(Scripts, ARunWaitsForTheUserOnlyAtItsEnd) {
  std::string inputs, outputs;
  for (int i = 0; i < 4; ++i) {
    inputs += i % 2 ? "script.xy\n" : "none.xy\n";
    outputs += "o" + std::to_string(i) + ".xy\n";
  }
  WriteText("in.mlt", inputs);
  WriteText("out.mlt", outputs);
  WriteText("a.scp", "in.mlt\nout.mlt\nINFM    2\nUTFM    2\n");
  MakePattern("script.xy");
  RunOn("other.xy", []() -> Script {
    ws.scriptpath = Place() + "/a.scp";
    Pick(kRun);
    co_await Shown("box");
    const auto* box = FindA<QMessageBox>("box");
    // The reasons are in the language of the system.
    const QStringList lines = box->text().split('\n');
    EXPECT_EQ(lines.size(), 4);
    EXPECT_EQ(lines.value(1), "Files read: 2, written: 2, skipped: 2");
    EXPECT_TRUE(lines.value(2).startsWith("none.xy: Error opening xy file: "));
    EXPECT_EQ(lines.value(2), lines.value(3));
    Press("Return");
    co_await Idle();
    EXPECT_EQ(Root()->windowTitle(), "script - Quillagram");
    EXPECT_EQ(ws.patternpath, Place() + "/script.xy");
  });
}
