// Structures by the selector and the menu.
#include <gtest/gtest.h>

#include <QLabel>
#include <algorithm>

#include "plot/structureticks.h"
#include "toolkit/displaylist.h"
#include "toolkit/qt/window.h"
#include "user.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

#ifdef QUILLAGRAM_GEMMI

namespace {

long Strokes(int k) {
  return std::ranges::count_if(ScreenList().strokes, [=](const Stroke& s) {
    return static_cast<int>(s.pen.colour) == StructureColour(k);
  });
}

}  // namespace

TEST(Structures, AreChosenAndClosedByName) {
  RunOn("ticks.xy", []() -> Script {
    Pick(MenuOpenStructures);
    co_await Shown("selector");
    Type(QUILLAGRAM_SOURCE "/tools/structures/silicon.cif");
    Press("Return");
    co_await Idle();
    EXPECT_EQ(ws.nstructure, 1);
    EXPECT_TRUE(Root()->parts[2]->text().startsWith("silicon Si (F d -3 m:1): 111 at 28.44 (100)"));
    EXPECT_GT(Strokes(1), ws.nstructureline(1)) << "ticks and letters";
    const auto item = [](int id) { return Root()->findChild<QAction*>(QString("menu%1").arg(id)); };
    EXPECT_EQ(item(MenuUseCell1)->text().remove('&'), "1 silicon");
    EXPECT_FALSE(item(MenuUseCell1 + 1)->isEnabled());
    Pick(MenuScaleStructures);
    co_await Idle();
    EXPECT_TRUE(item(MenuScaleStructures)->isChecked());
    Pick(MenuCloseStructure1);
    co_await Idle();
    EXPECT_EQ(Strokes(1), 0);
    EXPECT_EQ(FindA<QLabel>("status4")->text(), "0 structures");
  });
}

#endif
