// The File menu: patterns in and out, pictures, paper.
#include "multi/multi.h"
#include "multi/summary.h"
#include "patternfiles/export/export.h"
#include "patternfiles/patternfiles.h"
#include "shell/shell.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/parameters.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

using namespace controls;

// ---- Opening ----

Outcome AskByFormat(Arguments& arguments) {
  arguments.path = AskForPattern(ws.filetype);
  return Answered(!arguments.path.empty());
}

Outcome AskKnownFile(Arguments& arguments) { return AskScans(arguments.path, arguments.scans); }

Outcome AskAnyFormat(Arguments& arguments) {
  arguments.path = AskForPattern(FileTypeAny);
  return arguments.path.empty() ? Outcome::Cancelled : AskKnownFile(arguments);
}

// What the program does beside when a pattern has come in.
Outcome AfterOpening(Outcome outcome) {
  if (outcome != Outcome::Done) return outcome;
  NotePointsKept(ws.patternpath);
  UpdateRecentFiles();
  ClearFitText();
  if (!ws.importnote.empty()) WindowOutStatusBar(3, ws.importnote);
  return outcome;
}

Outcome OpenByFormat(const Arguments& arguments) {
  return AfterOpening(OpenPattern(arguments.path, ws.filetype));
}

Outcome OpenAnyFormat(const Arguments& arguments) {
  const Outcome outcome = AfterOpening(OpenPattern(arguments.path, FileTypeAny, arguments.scans));
  if (outcome == Outcome::Done) OpenScansOver(arguments.path, arguments.scans);
  return outcome;
}

// ---- Saving ----

constexpr Control kSaveControls[] = {
    Choice(1098, "Input/modified pattern", "Content", &ws.savecontent),
    Choice(1099, "Refined pattern", "Content"),
    Choice(1100, "Background", "Content"),
    Choice(1101, "All (*.tab)", "Content"),
    Choice(1103, "*.gdf (Huber)", "Format", &ws.saveformat),
    Choice(1104, "*.xy (General)", "Format"),
    Choice(1105, "*.dat (General)", "Format"),
    Choice(1106, "*.cif (General)", "Format"),
    Number(1107, "Start", &ws.savestart, "(f10.2)", "deg.", "Pattern limits"),
    Number(1108, "Stop", &ws.savestop, "(f10.2)", "deg.", "Pattern limits"),
    Number(1109, "Step", &ws.savestep, "(f10.2)", "deg.", "Pattern limits"),
    Ok,
    Cancel,
};
constexpr int kInputPattern = 1, kAllPatterns = 4;  // savecontent
constexpr int kTabFile = 5;                         // saveformat

// All three patterns go to a table, which knows neither other formats nor a step.
void EnableSaveFields(bool single) {
  for (int field : {1103, 1104, 1105, 1106, 1109}) WDialogFieldState(field, single);
}
// The limits of the pattern replace those of the last save as soon as the dialog opens.
void ShowSave() {
  ws.savestart = FirstTth(SlotInput);
  ws.savestop = LastTth(SlotInput);
  ws.savestep = FirstStepOf(SlotInput);
  WDialogPutReal(1107, ws.savestart);
  WDialogPutReal(1108, ws.savestop);
  WDialogPutReal(1109, ws.savestep);
  EnableSaveFields(ws.savecontent != kAllPatterns);
}
void SaveFieldChanged(int field) {
  if (field < 1098 || field > 1101) return;
  int content = 0;
  WDialogGetRadioButton(1098, content);
  EnableSaveFields(content != kAllPatterns);
}
void ValidateSave() {
  if (ws.savecontent == kAllPatterns) ws.saveformat = kTabFile;
}
constexpr ParameterDialog kSave{.resource = {123, "Save pattern", kSaveControls},
                                .validate = ValidateSave,
                                .prepare = ShowSave,
                                .changed = SaveFieldChanged};

Outcome AskSave(Arguments& arguments) {
  arguments.path = AskSaveName();
  return Answered(!arguments.path.empty());
}

Outcome Save(const Arguments& arguments) {
  const Outcome outcome = SavePattern(arguments.path);
  const bool pattern = ws.savecontent == kInputPattern || ws.savecontent == kAllPatterns;
  if (outcome == Outcome::Done && pattern) NotePointsKept(arguments.path);
  return outcome;
}

// ---- The summary file ----

Outcome AskSumFile(Arguments& arguments) {
  arguments.path = "*.sum";
  WSelectFile("Sum file|*.sum|", FileMayBeNew, arguments.path, "Open sum file");
  return Answered(!arguments.path.empty() && !FileStem(arguments.path).starts_with('*'));
}

Outcome OpenSum(const Arguments& arguments) { return OpenSumFile(arguments.path); }

// ---- The menu ----

constexpr int kPopup = 40001, kOpen = MenuPopupOpen, kGraphics = MenuPopupGraphics,
              kExport = MenuPopupExport;
constexpr const char* kOpenTitle = "Open pattern";

constexpr Command Format(int id, const char* text, int filetype, const char* keys = "") {
  return {.item = {id, text, kOpen, false, keys},
          .title = kOpenTitle,
          .filetype = filetype,
          .viewmode = 1,
          .plotmask = PlotInput,
          .ask = AskByFormat,
          .run = OpenByFormat,
          .redraw = Redraw::Full,
          .undo = true};
}

// Of the format that the file has. As a rule its path is known.
constexpr Command AnyFormat(int id, const char* text, int parent, const char* keys = "",
                            Outcome (*ask)(Arguments&) = AskKnownFile) {
  return {.item = {id, text, parent, false, keys},
          .title = kOpenTitle,
          .viewmode = 1,
          .plotmask = PlotInput,
          .ask = ask,
          .run = OpenAnyFormat,
          .redraw = Redraw::Full,
          .undo = true};
}

// In a format whose name is asked for.
constexpr Command Picture(int id, const char* text, PictureFormat format) {
  return {
      .item = {id, text, kGraphics}, .number = format, .ask = AskPictureName, .run = SavePicture};
}

constexpr Command Pattern(int id, const char* text, const char* title, PatternExport format) {
  return {.item = {id, text, kExport},
          .title = title,
          .number = format,
          .ask = AskPatternExport,
          .run = ExportPattern};
}

constexpr Command Csv(int id, const char* text, const char* title, TableExport table) {
  return {.item = {id, text, kExport},
          .title = title,
          .number = table,
          .ask = AskTableExport,
          .run = ExportOneTable};
}

Outcome SaveJpeg(const Arguments&) { return SaveImage(".jpg"); }
Outcome SaveBitmap(const Arguments&) { return SaveImage(".bmp"); }

constexpr Command kCommands[] = {
    {.item = {kPopup, "&File", 0, true}},
    {.item = {kOpen, "Open pattern file", kPopup, true}},
    AnyFormat(MenuOpenAny, "Any format", kOpen, "Ctrl+O", AskAnyFormat),
    Format(40011, "*.xy (General)", 1, "Shift+X"),
    Format(40004, "*.gdf (Huber)", 2, "Shift+G"),
    Format(40010, "*.txt (Bruker)", 3, "Shift+T"),
    Format(40012, "*.uxd (Bruker)", 4, "Shift+U"),
    Format(40013, "*.cif (General)", 5),
    Format(40014, "*.dat (General)", 5),  // asks for *.cif files, as it always has
    Format(40015, "*.xrdml (Panalytical)", 7),
    Format(40016, "*.udf (Stoe)", 8),
    Format(40141, "*.chi (Fit2D)", 9),
    {.item = {MenuSavePattern, "Save pattern file(s)", kPopup},
     .dialog = &kSave,
     .ask = AskSave,
     .run = Save},
    {.item = {MenuOpenSum, "Open sum file", kPopup}, .ask = AskSumFile, .run = OpenSum},
    {.item = {MenuAddSum, "Add to sum file", kPopup}, .run = Plain<AddToSumFile>},
    {.item = {MenuEditSum, "Edit sum file", kPopup}, .run = Plain<EditSumFile>},
    {.item = {MenuCloseSum, "Close sum file", kPopup}, .run = Plain<CloseSumFile>},
    {.item = {MenuPrintGraphics, "&Print graphics", kPopup},
     .run = Plain<PrintGraphics>,
     .redraw = Redraw::Keep},
    {.item = {MenuPrintReport, "Print report", kPopup},
     .viewmode = 2,
     .run = Plain<PrintReport>,
     .redraw = Redraw::Keep,
     .undo = true},
    {.item = {kGraphics, "Save graphics", kPopup, true}},
    {.item = {MenuSaveJpeg, "*.jpg", kGraphics}, .run = SaveJpeg},
    {.item = {MenuSaveBitmap, "*.bmp", kGraphics}, .run = SaveBitmap},
    {.item = {MenuSaveEps, "*.eps", kGraphics}, .run = Plain<SaveEps>, .redraw = Redraw::Keep},
    Picture(MenuSavePng, "*.png", PicturePng),
    Picture(MenuSaveSvg, "*.svg", PictureSvg),
    Picture(MenuSavePdf, "*.pdf", PicturePdf),
    {.item = {kExport, "Expor&t", kPopup, true}},
    Pattern(MenuExportCsv, "Pattern, *.csv", "Export pattern as csv", ExportCsv),
    Pattern(MenuExportXye, "Pattern, *.xye", "Export pattern as xye", ExportXye),
    Pattern(MenuExportPdCif, "Pattern, *.cif", "Export pattern as pdCIF", ExportPdCif),
    Csv(MenuExportPeaks, "Peak list, *.csv", "Export peak list", ExportPeaks),
    Csv(MenuExportFit, "Fit results, *.csv", "Export fit results", ExportFitResults),
    Csv(MenuExportSolutions, "Indexing solutions, *.csv", "Export solutions", ExportSolutions),
    {.item = {40026, "About", kPopup}, .dialog = &AboutDialog, .history = false},
    AnyFormat(MenuRecent1, "empty", kPopup),
    AnyFormat(MenuRecent1 + 1, "empty", kPopup),
    AnyFormat(MenuRecent1 + 2, "empty", kPopup),
    AnyFormat(MenuRecent1 + 3, "empty", kPopup),
    {.item = {MenuExit, "E&xit", kPopup, false, "Ctrl+Q"},
     .run = [](const Arguments&) { return Outcome::Idle; },
     .history = false},
};

}  // namespace

std::span<const Command> FileCommands() { return kCommands; }
