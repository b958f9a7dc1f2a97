// Benchmarks of what a window paints.
#pragma once

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QSize>

#include "toolkit/toolkit.h"

// The benchmarks of this program, with a window of that size to be drawn in.
inline void RunInWindow(int argc, char** argv, QSize canvas) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  benchmark::Initialize(&argc, argv);
  WInitialise(argc, argv);
  WindowOpen(20, 20, canvas.width(), canvas.height(), 0, "Quillagram");
  IGrInit("");
  IGrArea(0, 0, 1, 1);
  IGrUnits(0, 0, 1000, 1000);
  benchmark::RunSpecifiedBenchmarks();
  WindowClose();
}
