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

// Reads a file. After a failure all is as it was; else a section that is missing, unreadable, or
// holds a number beyond 1e12 has its default, or leaves what stood. Then
//   - classes, centerings and modes that do not exist are those of a file without them, bgorder
//     lies within 0 to 15, a flag that is not 0 is 1, and a reflection out of the range of hklcode
//     has the code 0;
//   - wavelen has scanwave in 1 to 3; the ratio in scanwave is 0 behind that if the wavelengths are
//     equal;
//   - npeaks is the number of reflections read, at most 200; for none it is 200, of rows that hold
//     what they held.
// A reflection that is unreadable ends the list. Neither e.s.d.s nor the results
// of a refinement are read; they, nbkgcycles, the axes and the fit itself are the caller's.
RecordFailure ReadFit(const std::string& path, FitParameters& fit, PeakTable& peaks, int& npeaks,
                      Table<float, 3>& scanwave, Table<float, 9>& wavelen);
