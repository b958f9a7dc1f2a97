// Parameter dialogs: what they open with, what they make of entries.
#include <gtest/gtest.h>

#include <cmath>

#include "shell/shell.h"
#include "support/support.h"
#include "workspace/workspace.h"

namespace {

class Dialogs : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    ws.npts(1) = 11;  // 10 to 12 degrees in steps of 0.2
    for (int i = 1; i <= 11; ++i) {
      ws.xval(1, 1, i) = 10 + 0.2f * static_cast<float>(i - 1);
      ws.yval(1, i) = 100;
    }
    ws.viewmode = ws.plotmask = 1;
  }
  // Value and enabled state of a field in the events of an opened dialog: "0.50\t1".
  static std::string Shown(const std::vector<std::string>& events, int id) {
    const std::string start = "field\t" + std::to_string(id) + "\t";
    for (const std::string& line : events)
      if (line.starts_with(start)) return line.substr(line.find('\t', start.size()) + 1);
    return "no such field";
  }
  std::vector<std::string> Run(int number, const std::string& answers) {
    for (const Command& command : Commands())
      if (command.dialog && command.dialog->resource.number == number) {
        RunMenu(command.item.id, answers);
        break;
      }
    return Events();
  }
};

TEST_F(Dialogs, OpenWithTheFieldOrWithTheResource) {
  ws.smoothwindow = 9;
  ws.scalefactor = 4;  // "Scale factor" always opens at 1.00
  ws.zeroshift = 0.12341f;
  ws.a2ratio = 0.7f;
  EXPECT_EQ(Shown(Run(110, "press 2"), 1033), "9\t1");
  EXPECT_EQ(Shown(Run(107, "press 2"), 1032), "1.00\t1");
  EXPECT_EQ(Shown(Run(108, "press 2"), 1020), "0.1234\t1");
  EXPECT_EQ(Shown(Run(117, "press 2"), 1050), "0.50\t1");
  EXPECT_EQ(Shown(Run(109, "press 2"), 1023), "12.000\t1");
  EXPECT_EQ(Shown(Run(116, "press 2"), 1049), "2\t1");
  EXPECT_EQ(Shown(Run(113, "press 2"), 1038), "1.54056\t1");
  EXPECT_EQ(Shown(Run(113, "press 2"), 1042), "0.20\t1");
}

TEST_F(Dialogs, CancelChangesNothingAndOkKeepsAllDigits) {
  ws.crystallinity = 1;
  Run(136, "set 1161 0.7\npress Cancel");
  EXPECT_FLOAT_EQ(ws.wavelen(1), 1.54056f);
  Run(136, "set \"Pattern, alpha1\" 0.7093187\npress OK");
  EXPECT_EQ(ws.wavelen(1), 0.7093187f);
  EXPECT_EQ(ws.scanwave(1), 0.7093187f);
  EXPECT_EQ(ws.scanwave(2), 1.54433f);  // shown as 1.54433, untouched
  // d follows at once: lambda / 2 sin(theta)
  EXPECT_NEAR(ws.xval(2, 1, 1), 0.7093187 / 2 / std::sin(5 / 57.29578), 1e-5);
}

TEST_F(Dialogs, ValidationPutsEntriesRight) {
  const struct {
    int number;
    const char* entries;
    const float* real;
    const int* whole;
    float expected;
  } cases[] = {
      {106, "set 1036 -3", &ws.mut, nullptr, 0},
      {107, "set 1032 -2", &ws.scalefactor, nullptr, 1},
      {109, "set 1022 9", &ws.savestart, nullptr, 10},
      {109, "set 1022 12", &ws.savestart, nullptr, 10},
      {109, "set 1023 10", &ws.savestop, nullptr, 12},
      {109, "set 1023 12.5", &ws.savestop, nullptr, 12},
      {109, "set 1022 10,4", &ws.savestart, nullptr, 10.4f},
      {112, "set 1035 -1", &ws.muR, nullptr, 0},
      {116, "set 1049 13", nullptr, &ws.sgwindow, 3},
      {116, "set 1049 12", nullptr, &ws.sgwindow, 12},
      {120, "set 1093 0", &ws.bgscale, nullptr, 1},
      {115, "set 1048 15", nullptr, &ws.chebyorder, 14},  // 15 terms fit 14
      {102, "set 1064 on", nullptr, &ws.lpmode, 4},
      {125, "set Chebyshev on", nullptr, &ws.manualbgmode, 3},
      {119, "set 1087 on\nset 1088 7.25", &ws.autosubdev, nullptr, 7.25f},
  };
  for (const auto& c : cases) {
    SetUp();
    Run(c.number, std::string(c.entries) + "\npress OK");
    EXPECT_FLOAT_EQ(c.real ? *c.real : static_cast<float>(*c.whole), c.expected)
        << c.number << ": " << c.entries;
  }
}

TEST_F(Dialogs, SaveFollowsItsContent) {
  ws.savecontent = 4;
  ws.savestart = 1;
  auto events = Run(123, "press 2");
  EXPECT_EQ(Shown(events, 1104), "on\t0");
  EXPECT_EQ(Shown(events, 1109), "0.20\t0");
  EXPECT_EQ(Shown(events, 1107), "10.00\t1");
  EXPECT_FLOAT_EQ(ws.savestart, 10);  // taken from the pattern even though cancelled
  // Another content turns the formats on again.
  Run(123, "set 1098 on\nset 1105 on\npress OK\nfile");
  EXPECT_EQ(ws.savecontent, 1);
  EXPECT_EQ(ws.saveformat, 3);
  Run(123, "set 1101 on\npress OK\nfile");
  EXPECT_EQ(ws.saveformat, 5);
}

TEST_F(Dialogs, OverlayWavelengthsNeedTheirOverlay) {
  ws.noverlay = 2;
  const auto events = Run(136, "press 2");
  EXPECT_EQ(Shown(events, 1166), "0.00000\t1");
  EXPECT_EQ(Shown(events, 1167), "0.00000\t0");
}

}  // namespace
