// Dialogs by keyboard, and numbers whatever the desktop's language.
#include <gtest/gtest.h>
#include <langinfo.h>

#include <QAbstractSpinBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <clocale>

#include "shell/shell.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

QString Complaint() { return FindA<QLabel>("complaint")->text(); }

// A language that is missing is silently taken for "C", under which a test of commas proves
// nothing.
void ExpectCommasUnderGerman() {
  if (!qgetenv("LC_ALL").startsWith("de_DE")) return;
  const locale_t german = newlocale(LC_NUMERIC_MASK, "", nullptr);
  ASSERT_TRUE(german) << "the language is missing";
  EXPECT_STREQ(nl_langinfo_l(RADIXCHAR, german), ",");
  freelocale(german);
}

constexpr int MenuWavelengths = 40124, MenuSmooth = 40061;

}  // namespace

TEST(Numbers, AreReadAndShownAlikeInEveryLanguage) {
  RunOn("lang.xy", []() -> Script {
    ExpectCommasUnderGerman();
    EXPECT_STREQ(std::localeconv()->decimal_point, ".");
    EXPECT_EQ(QLocale().decimalPoint(), ".");
    EXPECT_EQ(ws.xval(AxisTth, SlotInput, 2), 10.05f);
    Pick(MenuWavelengths);
    co_await Shown("dialog136");
    EXPECT_EQ(QApplication::focusWidget(), Find("field1161"));
    EXPECT_EQ(FindA<QLineEdit>("field1161")->selectedText(), "1.54056");
    Type("0,71073");
    Press("Tab");
    Type("1.25");
    EXPECT_EQ(Complaint(), "");
    Press("Return");
    co_await Idle();
    EXPECT_EQ(ws.wavelen(1), 0.71073f);
    EXPECT_EQ(ws.wavelen(2), 1.25f);

    QTest::mouseMove(Root()->canvas, OnCanvas(0.5, 0.5));
    co_await Until{[] { return !Root()->parts[0]->text().isEmpty(); }, "the read-outs"};
    EXPECT_TRUE(Root()->parts[0]->text().startsWith("TwoTh"));
    EXPECT_TRUE(Root()->parts[0]->text().contains('.'));
  });
}

TEST(Dialogs, WrongNumbersStayOpenAndMarked) {
  RunOn("wrong.xy", []() -> Script {
    Pick(MenuSmooth);
    co_await Shown("dialog110");
    auto* spin = FindA<QAbstractSpinBox>("field1033");
    const QColor plain = spin->palette().color(QPalette::Base);
    for (const char* wrong : {"2", "20001", "3.5", "x"}) {
      spin->selectAll();
      Type(wrong);
      EXPECT_EQ(spin->text(), wrong) << "typed text is kept";
      EXPECT_TRUE(Complaint().contains("Allowed: 3 to 20000")) << Complaint().toStdString();
      EXPECT_NE(spin->palette().color(QPalette::Base), plain);
      Press("Return");
      co_await Until{[] { return true; }};
      EXPECT_TRUE(spin->isVisible()) << wrong;
      EXPECT_EQ(QApplication::focusWidget(), spin);
    }
    spin->selectAll();
    Type("4");
    for (const char* key : {"Down", "Down", "Up", "Up"}) Press(key);
    EXPECT_EQ(spin->text(), "5") << "the arrows stop at the range";
    EXPECT_EQ(Complaint(), "");
    EXPECT_EQ(spin->palette().color(QPalette::Base), plain);
    Press("Escape");
    co_await Idle();
    EXPECT_EQ(ws.smoothwindow, 3);
    EXPECT_TRUE(LastDeed().starts_with("open ")) << "cancelled, so nothing was done";
  });
}

// The advice is that of the entry with the focus, and gives way to a complaint.
TEST(Dialogs, EntriesTellWhatTheyMean) {
  RunOn("tips.xy", []() -> Script {
    Pick(MenuSearchOptions);
    co_await Shown("dialog132");
    EXPECT_TRUE(Complaint().contains("narrow peak")) << Complaint().toStdString();
    EXPECT_EQ(Find("field1141")->toolTip(), Complaint());
    Press("1");
    EXPECT_TRUE(Complaint().contains("Allowed: ")) << Complaint().toStdString();
    Type("5");
    Press("Tab");
    EXPECT_EQ(Complaint(), Find("field1142")->toolTip());
    EXPECT_TRUE(Complaint().contains("noise"));
    Find("button1")->setFocus();
    EXPECT_EQ(Complaint(), "");
    Press("Escape");
    co_await Idle();
  });
}

TEST(Dialogs, FitTheSmallScreenInALargeFont) {
  RunWith([]() -> Script {
    QFont font = QApplication::font();
    font.setPointSizeF(1.5 * font.pointSizeF());
    QApplication::setFont(font);
    for (const Command& command : Commands()) {
      if (!command.dialog) continue;
      const DialogResource& resource = command.dialog->resource;
      WRegisterDialogs({&resource, 1});
      WDialogLoad(resource.number);
      WDialogShow(-1, -1, 0, SemiModeless);
      QWidget* dialog = Find(QString("dialog%1").arg(resource.number));
      co_await Until{[=] { return dialog->isVisible(); }, resource.caption};
      const QRect room = dialog->screen()->availableGeometry();
      EXPECT_TRUE(room.contains(dialog->frameGeometry())) << resource.number;
      for (const QWidget* part : dialog->findChildren<QWidget*>()) {
        if (part->objectName() == "complaint" || !part->isVisible()) continue;
        EXPECT_GE(part->width(), part->minimumSizeHint().width())
            << resource.number << ' ' << part->objectName().toStdString();
      }
      WDialogUnload();
    }
  });
}
