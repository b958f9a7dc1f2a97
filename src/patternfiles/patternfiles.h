// Pattern files: opening, nine readers, five writers.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "workspace/command.h"

// ---- Opening ----------------------------------------------------------------------------------

inline constexpr int FileTypeAny = 10;

// Makes a file the current pattern in slot 1, of the format `filetype`. On success all options are
// at their defaults.
Outcome OpenPattern(const std::string& path, int filetype = FileTypeAny,
                    const ScanChoice& choice = {});

// Title and current directory follow the pattern.
void FollowPattern();

// Asks for an existing file of a format; blank when the user cancels.
std::string AskForPattern(int filetype);
// Asks for several, in the order picked; none when the user cancels.
std::vector<std::string> AskForPatterns(int filetype);

// What there is to say of a format number of `filetype`.
struct PatternFormat {
  int filetype;
  const char* extension;  // lower case, without a dot
  int (*read)(int slot, const std::string& path);
  const char* handlingerror;  // box behind the reader's, for a background or an overlay
};
std::span<const PatternFormat> PatternFormats();
const PatternFormat* FindFormat(int filetype);
const PatternFormat* FindFormatByExtension(const std::string& path);

// ---- Readers ----------------------------------------------------------------------------------

// Each reads a pattern into a slot and returns 1, or shows its message and returns 0. Into slot 1
// it also fills the copy in slot 3, scanwave, wavelen and the information strings.
int ReadXy(int slot, const std::string& path);
int ReadChi(int slot, const std::string& path);
int ReadTxt(int slot, const std::string& path);
int ReadUxd(int slot, const std::string& path);
int ReadUdf(int slot, const std::string& path);
int ReadGdf(int slot, const std::string& path);
int ReadDat(int slot, const std::string& path);
int ReadCif(int slot, const std::string& path);
int ReadXrdml(int slot, const std::string& path);

// A file of any format that is known, by what it holds. Where its extension names one of the
// readers above and that one finds the points that are there, the slot is as it leaves it.
// Otherwise it has the first scan of the file, and slot 1 what the file tells of wavelengths,
// sample, date and time; `importnote` says what was done to the points.
int ReadAny(int slot, const std::string& path);
// By the reader of a format; of any format the chosen scan, or the sum of the chosen ones.
int ReadPattern(const PatternFormat& format, int slot, const std::string& path,
                const ScanChoice& choice);

// Asks which scans of a file with several are wanted, and for the wavelength of positions in d or
// Q. Done without a question where there is no choice.
Outcome AskScans(const std::string& path, ScanChoice& choice);

// ---- Writers ----------------------------------------------------------------------------------

// Asks for a file name by saveformat; blank when the user cancels.
std::string AskSaveName();
// Writes by savecontent and saveformat, within savestart to savestop.
Outcome SavePattern(const std::string& path);
// Of the pattern that has been saved last.
int PointsSaved();
// Each writes a slot within the limits and on the step asked for and returns 1, or shows its
// message and returns 0. savestep and savestop may change.
int WriteGdf(const std::string& path, int slot);
int WriteXy(const std::string& path, int slot);
int WriteDat(const std::string& path, int slot);
int WriteCif(const std::string& path, int slot);
