// Dialogs: what may be entered, and what a routine reads back.
#include <gtest/gtest.h>

#include "support/support.h"
#include "toolkit/toolkit.h"

namespace {

using Lines = std::vector<std::string>;

constexpr Control kControls[] = {
    {.id = 11, .kind = ControlKind::Real, .label = "&Scale", .format = "(f10.2)"},
    {.id = 12, .kind = ControlKind::Integer, .label = "Window", .lowest = 3, .highest = 501},
    {.id = 13,
     .kind = ControlKind::Integer,
     .label = "Points",
     .lowest = 2,
     .highest = 12,
     .initial = "2",
     .outside = OutOfRange::Passed},
    {.id = 14, .kind = ControlKind::String, .label = "Sample", .initial = "none"},
    {.id = 21, .kind = ControlKind::Radio, .label = "3", .group = "Steps"},
    {.id = 22, .kind = ControlKind::Radio, .label = "5", .group = "Steps"},
    {.id = 31, .kind = ControlKind::Radio, .label = "Linear", .group = "Curve"},
    {.id = 32, .kind = ControlKind::Radio, .label = "Spline", .initial = "on", .group = "Curve"},
    {.id = 41, .kind = ControlKind::Check, .label = "Refine"},
    {.id = 1, .kind = ControlKind::Button, .label = "OK"},
    {.id = 2, .kind = ControlKind::Button, .label = "Cancel"},
    {.id = 51, .kind = ControlKind::Button, .label = "&Fit"},
};
constexpr DialogResource kResources[] = {{9001, "First", kControls}, {9002, "Second", kControls}};

class Dialogs : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    WRegisterDialogs(kResources);
    WDialogUndefined(0, 0, 0);
    WDialogLoad(9001);
  }
  void TearDown() override { WDialogUnload(); }

  // Shows the dialog to the lines; gives the button that ended it, or the error.
  static std::string Run(const std::string& lines) {
    Answer(lines);
    try {
      WDialogShow(-1, -1, 0, Modal);
    } catch (const std::runtime_error&) {
      return Events().back();
    }
    return std::to_string(WInfoDialog(4));
  }
  static float Real(int field) {
    float value = -1;
    WDialogGetReal(field, value);
    return value;
  }
  // Column and row of the cell that a grid has picked.
  static std::pair<int, int> Cell(int field) {
    std::pair<int, int> cell(-1, -1);
    WGridPos(field, cell.first, cell.second);
    return cell;
  }
  static int Integer(int field) {
    int value = -1;
    WDialogGetInteger(field, value);
    return value;
  }
};

TEST_F(Dialogs, OpenAsTheResourceSaysWithWhatWasPut) {
  WDialogPutReal(11, -0.001f);
  WDialogPutInteger(12, 201);
  WDialogPutCheckBox(41, 1);
  WDialogFieldState(14, 0);
  EXPECT_EQ(Run("press Fit"), "51");
  EXPECT_EQ(Events(),
            (Lines{"dialog\t9001\tFirst", "field\t11\tScale\t0.00\t1", "field\t12\tWindow\t201\t1",
                   "field\t13\tPoints\t2\t1", "field\t14\tSample\tnone\t0", "field\t21\t3\ton\t1",
                   "field\t22\t5\toff\t1", "field\t31\tLinear\toff\t1", "field\t32\tSpline\ton\t1",
                   "field\t41\tRefine\ton\t1", "field\t1\tOK\t\t1", "field\t2\tCancel\t\t1",
                   "field\t51\tFit\t\t1"}));
  WDialogPutReal(11, -2.5f);
  Run("press Fit");
  EXPECT_EQ(Events()[1], "field\t11\tScale\t-2.50\t1");
}

TEST_F(Dialogs, NumbersComeBackAsPutOrAsTyped) {
  const std::pair<const char*, float> cases[] = {{"", 1.23456f},             // left alone
                                                 {"set Scale 1.2\n", 1.2f},  // as it was shown
                                                 {"set Scale 2.3456789\n", 2.3456789f},
                                                 {"set Scale 0,125\n", 0.125f},
                                                 {"set Scale +1e-3\n", 0.001f},
                                                 {"set Scale \" -7 \"\n", -7},
                                                 {"set Scale \"\"\n", 0},
                                                 {"set Scale 16777217\n", 16777216.0f}};
  for (const auto& [entry, value] : cases) {
    WDialogPutReal(11, 1.23456f, "(f10.1)");
    EXPECT_EQ(Run(std::string(entry) + "press OK"), "1");
    EXPECT_EQ(Real(11), value) << entry;
  }
}

TEST_F(Dialogs, WrongNumbersAreRefusedWithTheRange) {
  const std::pair<const char*, const char*> cases[] = {
      {"set 11 x", "\"x\" is not a number"},
      {"set 11 nan", "\"nan\" is not a number"},
      {"set 11 -inf", "\"-inf\" is not a number"},
      {"set 11 1e300", "\"1e300\" is not a number"},
      {"set 11 1,234.5", "\"1,234.5\" is not a number"},
      {"set 11 0x10", "\"0x10\" is not a number"},
      {"set 12 2", "\"2\" is out of range. Allowed: 3 to 501"},
      {"set 12 502", "\"502\" is out of range. Allowed: 3 to 501"},
      {"set 12 3.5", "\"3.5\" is not a whole number. Allowed: 3 to 501"},
      {"set 12 99999999999", "\"99999999999\" is not a whole number. Allowed: 3 to 501"},
      {"set 13 many", "\"many\" is not a whole number. Allowed: 2 to 12"},
      {"set Spline off", "A choice is turned off by another one"},
      {"set Refine yes", "A check box is on or off"},
  };
  for (const auto& [line, complaint] : cases) {
    WDialogLoad(9001);
    const std::string event = Run(line);
    EXPECT_EQ(event.substr(event.rfind('\t') + 1), complaint) << line;
    WDialogHide();
  }
}

TEST_F(Dialogs, EmptyAndPassedNumbers) {
  WDialogUndefined(-5, 0, 0);
  WDialogPutInteger(12, 100);
  EXPECT_EQ(Run("set Window \"\"\nset Points 1\npress OK"), "1");
  EXPECT_EQ(Integer(12), -5);
  EXPECT_EQ(Integer(13), 1);  // out of range, for the dialog's own rule
  for (const int end : {3, 501}) {
    EXPECT_EQ(Run("set Window " + std::to_string(end) + "\npress OK"), "1");
    EXPECT_EQ(Integer(12), end);
  }
  // What the program itself puts is not held against the user.
  WDialogPutInteger(12, 1);
  EXPECT_EQ(Run("press OK"), "1");
  EXPECT_EQ(Integer(12), 1);
}

TEST_F(Dialogs, OneRadioButtonOfEachGroupIsOn) {
  const auto selected = [](int first) {
    int index = -1;
    WDialogGetRadioButton(first, index);
    return index;
  };
  EXPECT_EQ(selected(21), 1);
  EXPECT_EQ(selected(31), 2);
  WDialogPutRadioButton(31);
  // "5" is a label here, not the number of a control. What is off can be turned off once more.
  EXPECT_EQ(Run("set \"5\" on\nset 21 off\npress 2"), "2");
  EXPECT_EQ(selected(21), 2);
  EXPECT_EQ(selected(31), 1);
}

TEST_F(Dialogs, ChangesAreToldOnceAndOnlyWhenTheUserMakesThem) {
  std::vector<int> changes;
  Answer("set Sample none\nset Sample quartz\nset Linear on\nset Linear on\npress OK");
  WDialogShow(-1, -1, 0, Modal, [&](int field) {
    changes.push_back(field);
    WDialogPutString(14, "by program");
    WDialogFieldState(41, 0);
  });
  EXPECT_EQ(changes, (std::vector{14, 31}));
  std::string text;
  WDialogGetString(14, text);
  EXPECT_EQ(text, "by program");
  const std::string event = Run("set Refine on");
  EXPECT_EQ(event.substr(event.rfind('\t') + 1), "Refine is disabled");
  WDialogHide();
}

// A dialog over a dialog, the same one too, leaves the lower one as it was.
TEST_F(Dialogs, Nest) {
  for (int inner : {9002, 9001}) {
    WDialogLoad(9001);
    Answer("set Sample outer\nset Sample inner\npress Cancel\npress OK");
    bool nested = false;
    WDialogShow(-1, -1, 0, Modal, [&](int) {
      if (std::exchange(nested, true)) return;
      WDialogLoad(inner);
      WDialogShow(-1, -1, 0, Modal);
      EXPECT_EQ(WInfoDialog(4), 2);
      std::string text;
      WDialogGetString(14, text);
      EXPECT_EQ(text, "inner");
      WDialogUnload();
    });
    std::string text;
    WDialogGetString(14, text);
    EXPECT_EQ(text, "outer");
    EXPECT_EQ(WInfoDialog(4), 1);
  }
}

TEST_F(Dialogs, GridsAreFilledByCellsAndPicked) {
  static constexpr Control controls[] = {{1, ControlKind::Button, "OK"},
                                         {70, ControlKind::Grid, "a|b|M(20)"}};
  static constexpr DialogResource resource{9070, "Cells", controls};
  WRegisterDialogs({&resource, 1});
  WDialogLoad(9070);
  WGridPutCellReal(70, 1, 2, 5.4309f, "(f8.3)");
  WGridPutCellInteger(70, 3, 1, 42);
  WGridPutCellInteger(70, 4, 1, 7);  // no such column
  WGridColourRow(70, 2, 0xffffff, 0xff0000);
  EXPECT_EQ(Cell(70), std::pair(0, 0));
  Answer("set 70 2,2\npress OK");
  int picked = 0;
  WDialogShow(-1, -1, 0, Modal, [&](int field) { picked = field; });
  EXPECT_EQ(picked, 70);
  EXPECT_EQ(Cell(70), std::pair(2, 2));
  EXPECT_EQ(Events()[2], "field\t70\ta|b|M(20)\t  42\\n5.431  \t1");
  // Beside the plot a message tells of the cell.
  WDialogShow(-1, -1, 0, SemiModeless);
  Answer("set 70 1,2");
  Message message;
  EXPECT_EQ(WMessage(message), MessageFieldChanged);
  EXPECT_EQ(std::pair(message.value1, message.value2), std::pair(70, 70));
  EXPECT_EQ(std::pair(message.x, message.y), std::pair(1.0f, 2.0f));
  EXPECT_EQ(WTakeJournal().back(), "set 70 \"1,2\"");
  Answer("set 70 1,0");  // a head that cannot be picked
  EXPECT_THROW(WMessage(message), std::runtime_error);
  WDialogHide();
  // With other columns it begins anew.
  WGridPutHeads(70, {"x", "y"});
  EXPECT_EQ(Cell(70), std::pair(0, 0));
  WGridPutRows(70, {{"1", "2", "3"}, {"4"}}, 0);
  Events();
  Answer("set 70 2,2\npress OK");
  WDialogShow(-1, -1, 0, Modal);
  EXPECT_EQ(Events()[2], "field\t70\ta|b|M(20)\t1 2\\n4 \t1");
  Answer("set 70 3,1\npress OK");
  EXPECT_THROW(WDialogShow(-1, -1, 0, Modal), std::runtime_error);
  WDialogUnload();
}

// A head picked twice and a cell picked again are picks of their own, and none of them is
// forgotten: what they mean has changed in between.
TEST_F(Dialogs, HeadsOfAGridArePicked) {
  static constexpr Control controls[] = {
      {.id = 70, .kind = ControlKind::Grid, .label = "a|b", .heads = true}};
  static constexpr DialogResource resource{9071, "Heads", controls};
  WRegisterDialogs({&resource, 1});
  WDialogLoad(9071);
  WGridPutRows(70, {{"1", "x"}, {"2", "y"}, {"3"}}, 2);
  WDialogShow(-1, -1, 0, SemiModeless);
  WTakeJournal();
  Message message;
  for (const char* cell : {"1,2", "2,0", "2,0", "1,2", "1,2"}) {
    Answer("set 70 " + std::string(cell));
    EXPECT_EQ(WMessage(message), MessageFieldChanged);
    EXPECT_EQ(std::to_string(Cell(70).first) + "," + std::to_string(Cell(70).second), cell);
  }
  EXPECT_EQ(WTakeJournal().size(), 5u);
  WGridPick(70, 2, 3);
  WGridPutRows(70, {{"1", "x", "no such column"}}, -2);
  EXPECT_EQ(Cell(70), std::pair(2, 0));
  for (const char* gone : {"1,2", "3,0", "x,0", "1,", "1,-1"}) {
    Answer(std::string("set 70 ") + gone);
    EXPECT_THROW(WMessage(message), std::runtime_error) << gone;
  }
  WDialogUnload();
}

TEST_F(Dialogs, BesideThePlotEventsAreMessages) {
  WDialogShow(-1, -1, 0, SemiModeless);
  Answer("set Scale 2\nkey up\npress Fit\nmenu 40008\n");
  Message message;
  EXPECT_EQ(WMessage(message), MessageFieldChanged);
  EXPECT_EQ(std::pair(message.value1, message.value2), std::pair(11, 11));
  EXPECT_EQ(Real(11), 2);
  EXPECT_EQ(WMessage(message), MessageKey);
  EXPECT_EQ(WMessage(message), MessageButton);
  EXPECT_EQ(message.value1, 51);
  EXPECT_THROW(WMessage(message), std::runtime_error);  // no menu while it stands
  WDialogHide();
  Answer("menu 40008");
  EXPECT_EQ(WMessage(message), MessageMenu);
}

}  // namespace
