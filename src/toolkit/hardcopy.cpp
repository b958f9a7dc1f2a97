// Printing, EPS files, and pictures of the window.
#include <filesystem>

#include "toolkit/common.h"
#include "toolkit/dialogs.h"

namespace {

int driver = DriverPrinter;
std::string epsfile;
std::string job;
bool accepted = false;  // the hardcopy dialog ended with OK
bool started = false;

constexpr float PageWidth = PaperWidth * PointsPerMillimetre;
constexpr float PageHeight = PaperHeight * PointsPerMillimetre;

// Shows that something could not be done with a file, and why if that is known.
bool Complain(const std::string& text) {
  MessageBoxError("Error", FileReason().empty() ? text : text + ": " + FileReason());
  return false;
}

bool WriteOut() {
  KeepFileReason("");
  if (driver == DriverEps)
    return WriteEps(PaperList(), epsfile, job, PageWidth, PageHeight) ||
           Complain("Cannot write " + epsfile);
  return frontend::Print(PaperList(), job) || Complain("Cannot print " + job);
}

// In small letters.
std::string ExtensionOf(const std::string& file) {
  std::string extension = std::filesystem::path(file).extension().string();
  for (char& c : extension)
    if (c >= 'A' && c <= 'Z') c += 'a' - 'A';
  return extension;
}

// The window's drawing as a vector picture, in points.
struct PictureSize {
  float width = 720, height = 720;

  PictureSize() {
    int columns = 0, rows = 0;
    frontend::AreaPixels(columns, rows);
    if (columns > 0 && rows > 0) height = width * rows / columns;
  }
};

// The screen as a picture of a format, which is an extension.
bool WriteScreen(const std::string& file, const std::string& format) {
  const PictureSize size;
  const std::string title = std::filesystem::path(file).stem().string();
  if (format == ".eps") return WriteEps(ScreenList(), file, title, size.width, size.height);
  if (format == ".svg") return WriteSvg(ScreenList(), file, title, size.width, size.height);
  if (format == ".pdf")
    return WritePdf(ScreenList(), file, title, size.width, size.height, size.width, size.height);
  return frontend::SaveImage(ScreenList(), file, format);
}

}  // namespace

void IGrHardcopySelect(int, int which) { driver = which; }

// The page, its scale and its resolution are fixed here: the options leave nothing to choose.
void IGrHardcopyOptions(int, float) {}

void WHardcopyOptions(int, const std::string& file) {
  started = false;
  if (driver == DriverEps) {
    epsfile = file;
    WSelectFile("EPS file|*.eps|", FileSave, epsfile, "Save EPS file");
    accepted = !epsfile.empty();
  } else {
    const PauseBusy pause;
    ShowDrawing();
    accepted = frontend::PrintDialog(file);
  }
  SetInfoDialog(accepted ? ButtonOk : ButtonCancel);
}

// A job may itself be called "S": it is the end only of one that has been started.
bool IGrHardcopy(const std::string& name) {
  if (!accepted) return true;
  if (started && name == "S") {
    accepted = started = false;
    return WriteOut();
  }
  job = name;
  started = true;
  return true;
}

bool SaveScreen(const std::string& file) { return WriteScreen(file, ExtensionOf(file)); }

bool IGrSaveImage(const std::string& file, const std::string& format) {
  ShowDrawing();
  KeepFileReason("");
  return WriteScreen(file, format.empty() ? ExtensionOf(file) : format) ||
         Complain("Cannot write " + std::filesystem::absolute(file).string());
}

void WCopyPicture(const std::string& title) {
  ShowDrawing();
  const PictureSize size;
  frontend::CopyPicture(ScreenList(), SvgText(ScreenList(), title, size.width, size.height));
}
