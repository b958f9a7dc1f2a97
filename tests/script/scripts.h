// Scripts with their lists and patterns in a directory of their own.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "shell/shell.h"
#include "support/support.h"
#include "workspace/slots.h"
#include "workspace/workspace.h"

using Lines = std::vector<std::string>;

enum { MenuCreateScript = 40133, MenuOpenScript, MenuViewScript, MenuRunScript };

class ScriptTest {
 public:
  ScriptTest() { FreshWorkspace(); }
  std::string file(const std::string& name) const { return work_.file(name); }
  const std::string& path() const { return work_.path(); }
  void Write(const std::string& name, const std::string& text) const {
    WriteFile(file(name), text);
  }
  std::string Read(const std::string& name) const { return ReadFile(file(name)); }

  // A pattern of whole counts: a peak of `height` at 15 degrees on 100 counts. Its step is 1/16,
  // with which no angle is rounded.
  void Pattern(const std::string& name, int height, int points = 200, double first = 10) const {
    std::string text;
    for (int i = 0; i < points; ++i) {
      const double x = first + i / 16.0;
      text += std::to_string(x) + " " +
              std::to_string(std::lround(100 + height * std::exp(-(x - 15) * (x - 15) / 0.02))) +
              "\n";
    }
    Write(name, text);
  }

  // Writes the script with its lists and runs it from the menu; gives the boxes.
  Lines Run(const std::string& inputs, const std::string& outputs,
            const std::string& commands) const {
    Write("in.mlt", inputs);
    Write("out.mlt", outputs);
    Write("a.scp", "in.mlt\nout.mlt\n" + commands);
    return RunFile("a.scp");
  }
  Lines RunFile(const std::string& name) const {
    ws.scriptpath = file(name);
    Events();
    RunMenu(MenuRunScript);
    return Boxes();
  }

  static Lines Boxes() {
    Lines boxes;
    for (const std::string& event : Events())
      if (event.starts_with("box\t")) boxes.push_back(event.substr(4));
    return boxes;
  }

 private:
  TempDir work_;
};

// The counts and the two-theta of slot 1.
inline std::vector<float> CountsNow(int slot = SlotInput) {
  return {IntensityOf(slot).begin(), IntensityOf(slot).end()};
}
inline std::vector<float> AnglesNow(int slot = SlotInput) {
  return {TthOf(slot).begin(), TthOf(slot).end()};
}
