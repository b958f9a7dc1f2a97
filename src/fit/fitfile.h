// Fit files (.fit): the parameters of a whole-pattern fit and its reflections.
#pragma once

#include <string>

#include "crystal/recordstore.h"
#include "workspace/workspace.h"

using PeakTable = Table<float, 8, MaxPeaks + 1>;

// Writes the file; returns why it could not be written to its end, or nothing. Numbers without room
// in their columns are set wider apart. What is no number, or has no room there either, is told
// before the file is touched.
std::string WriteFit(const std::string& path, const FitParameters& fit, const PeakTable& peaks,
                     int npeaks, const Table<float, 3>& scanwave);

// Reads a file into fields that are the caller's own: he does with them what a load means, from the
// axes to the fit. After a failure all is as it was; else each section that is missing, unreadable,
// or holds a number beyond 1e12 has its default, or leaves what stood. Then
//   - classes, centerings and modes that do not exist are those of a file without them, bgorder
//     lies within 0 to 15, flags are 0 or 1, and reflections out of the range of hklcode have its
//     0;
//   - wavelen has scanwave in 1 to 3, whose ratio becomes 0 behind that if it is of two equal
//     wavelengths;
//   - npeaks is the number of reflections read, and 200 for none: rows that hold what they held.
// Further reflections than 200 are left. Neither the e.s.d.s nor the results of a fit are read.
RecordFailure ReadFit(const std::string& path, FitParameters& fit, PeakTable& peaks, int& npeaks,
                      Table<float, 3>& scanwave, Table<float, 9>& wavelen);
