// The journal of what the user enters, and its way back through a transcript.
#include "toolkit/journal.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/support.h"
#include "toolkit/toolkit.h"

namespace {

using Lines = std::vector<std::string>;

constexpr int Scale = 11, Order = 12, Sample = 14, Linear = 21, Spline = 22, Refine = 41, Fit = 51;

constexpr Control kControls[] = {
    {.id = Scale, .kind = ControlKind::Real, .label = "Scale", .format = "(f10.2)"},
    {.id = Order, .kind = ControlKind::Integer, .label = "Order", .lowest = 1, .highest = 9},
    {.id = Sample, .kind = ControlKind::String, .label = "Sample"},
    {.id = Linear, .kind = ControlKind::Radio, .label = "Linear"},
    {.id = Spline, .kind = ControlKind::Radio, .label = "Spline"},
    {.id = Refine, .kind = ControlKind::Check, .label = "Refine"},
    {.id = ButtonOk, .kind = ControlKind::Button, .label = "OK"},
    {.id = Fit, .kind = ControlKind::Button, .label = "Fit"},
};
constexpr DialogResource kResource{9010, "Journal", kControls};

// All that a program gets to know from its user.
struct Session {
  float scale = 0, besidescale = 0;
  int order = 0, curve = 0, refine = 0, button = 0, answer = -1;
  std::string sample, picked, notpicked = "x";
  std::vector<std::pair<int, int>> messages;
  std::vector<DrawPoint> places;
  bool operator==(const Session&) const = default;
};

void ShowModal(Session& got) {
  WDialogLoad(kResource.number);
  WDialogPutReal(Scale, 1.23456f);
  WDialogPutInteger(Order, 1);
  WDialogFieldState(Order, 0);
  WDialogShow(-1, -1, 0, Modal, [](int field) {
    if (field == Spline) WDialogFieldState(Order, 1);
    if (field == Order) WDialogPutString(Sample, "of an order");
  });
  got.button = WInfoDialog(4);
  WDialogGetReal(Scale, got.scale);
  WDialogGetInteger(Order, got.order);
  WDialogGetRadioButton(Linear, got.curve);
  WDialogGetCheckBox(Refine, got.refine);
  WDialogGetString(Sample, got.sample);
  WDialogUnload();
}

void ShowBeside(Session& got) {
  WDialogLoad(kResource.number);
  WDialogShow(-1, -1, 0, SemiModeless);
  Message message;
  while (WMessage(message) != MessageButton) {
    got.messages.emplace_back(message.type, message.value1);
    if (message.type == MessageMouseDown) got.places.push_back({message.x, message.y});
    WDialogGetReal(Scale, got.besidescale);
  }
  WDialogUnload();
}

void DrawBand(Session& got) {
  Message message;
  WMessage(message);
  DrawPoint end{};
  int ending = 0;
  WGrInput(3, message.x, message.y, end.x, end.y, ending);
  got.places.insert(got.places.end(), {{message.x, message.y}, end});
}

Session Enter(const std::string& lines) {
  Session got;
  Answer(lines);
  ShowModal(got);
  got.answer = MessageBoxQuery("Question", "Subtract?");
  WSelectFile("EPS file|*.eps|", FileSave, got.picked, "Save");
  WSelectFile("EPS file|*.eps|", FileSave, got.notpicked, "Save");
  ShowBeside(got);
  DrawBand(got);
  return got;
}

TEST(Journal, EntersTheSameAgain) {
  FreshWorkspace();
  WRegisterDialogs({&kResource, 1});
  WMessageEnable(MessageMouseMove, 0);
  WMessageEnable(MessageMouseUp, 0);
  WTakeJournal();
  const Session first = Enter(
      "set Spline on\nset Order 3\nset Order 5\nset Sample \"a \"\"b\"\" #c\"\n"
      "set Scale 1.23\nset Order 4\nset Sample quartz\nset Refine on\nset Refine off\nset Refine "
      "on\npress OK\n"
      "press Cancel\nfile \"two words\"\nfile\n"
      "set Scale 0,08\nkey up\nclick left 123.456789 0.1\nclick right 1e3 -2\npress Fit\n"
      "band 100 200.5 300.25 1e-3\n");
  EXPECT_EQ(first.sample, "quartz");
  EXPECT_EQ(first.scale, 1.23f) << "typed as it was shown";
  const Lines lines = WTakeJournal();
  const std::string path = std::filesystem::current_path().string() + "/two words.eps";
  EXPECT_EQ(lines, (Lines{"set 22 \"on\"", "set 12 \"5\"", "set 14 \"a \"\"b\"\" #c\"",
                          "set 11 \"1.23\"", "set 12 \"4\"", "set 14 \"quartz\"", "set 41 \"on\"",
                          "press 1", "press 2", "file \"" + path + "\"", "file", "set 11 \"0,08\"",
                          "key up", "click left 123.456787 0.100000001", "click right 1000 -2",
                          "press 51", "band 100 200.5 300.25 0.00100000005"}));
  EXPECT_EQ(WTakeJournal(), Lines{});
  std::string again;
  for (const std::string& line : lines) again += line + '\n';
  EXPECT_EQ(Enter(again), first);
  EXPECT_EQ(WTakeJournal(), lines);
}

TEST(Journal, ALineEndIsOnlyTold) {
  WTakeJournal();
  JournalFiles(Lines{"/tmp/two\nlines.xy"});
  EXPECT_EQ(WTakeJournal(), Lines{"# file \"/tmp/two lines.xy\""});
}

}  // namespace
