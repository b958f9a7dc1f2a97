// The one shared state of the running program: plain fields that every command reads and rewrites.
//
// Reals are 32-bit, integers 32-bit signed. Angles are two-theta in degrees, lengths in angstrom,
// intensities in counts. Texts carry no trailing blanks; an unset text is empty.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "workspace/table.h"

inline constexpr const char* ProgramTitle = "Quillagram";

inline constexpr int MaxPoints = 20000;  // points a slot can hold
inline constexpr int MaxSlots = 9;
inline constexpr int MaxPeaks = 200;
inline constexpr int MaxManualPoints = 100;  // manual background points
inline constexpr int MaxOverlays = 4;
inline constexpr int MaxStructures = 8;
inline constexpr int MaxStructureLines = 1000;  // of one structure
inline constexpr int MaxRecent = 4;
inline constexpr int MaxSolutions = 100;  // cells of an indexing run
inline constexpr int MaxFoundCells = 20;  // in the table of "Find cell"
inline constexpr int MaxChildWindows = 50;
inline constexpr int MaxChebyshev = 15;  // coefficients of a background polynomial
inline constexpr int TextLength = 256;   // characters of a text field

enum Slot {
  SlotInput = 1,       // (A) the pattern as read, changed in place by every Modify command
  SlotBackground = 2,  // (B)
  SlotNet = 3,         // pattern minus background; a copy of slot 1 after a load
  SlotRefined = 4,     // (C) the calculated pattern of the last fit
  SlotOverlay = 5,     // overlays 1 to 4 lie in slots 5 to 8
  SlotScratch = 9,
};

enum Axis { AxisTth = 1, AxisD = 2, AxisQ = 3 };

// Switches of `plotmask`.
enum PlotSwitch {
  PlotInput = 1,
  PlotBackground = 2,
  PlotRefined = 4,
  PlotNet = 8,
  PlotResidual = 16,
  PlotPeaks = 32,
};

// Rows of `peaks`. After a general fit pfwhmr and pshaper hold the left values.
enum PeakField { ptth = 1, pint, pfwhm, pshape, pfwhmr, pshaper, phkl, pmult };

// Where a row of the peak list has its values from. Of a fitted one area and widths are fitted, and
// the position too, by itself or as the cell puts it. A calculated one is a peak of the model, an
// indexed one a line of a cell that has been found, of which place and indices alone are known.
enum PeakOrigin {
  PeakSearched = 1,
  PeakPicked,
  PeakFitted,
  PeakCalculated,
  PeakLoaded,
  PeakIndexed,
};

// Fields of a row of `solutions`: the cell in angstrom, degrees and cubic angstrom, its figure of
// merit, and the lines that ITO has indexed or TREOR90 has not.
enum SolutionField { sola = 1, solb, solc, solalpha, solbeta, solgamma, solvolume, solfom, solnix };
using SolutionTable = Table<float, MaxSolutions, solnix>;

// Fields of a row of `findcell`: the cell as above, the zero that is added to every measured
// two-theta, and their e.s.d.s; figures of merit; lines indexed and all lines; the logarithm of the
// odds against lines that lie anywhere; the row that it is a relative of, or 0; 1 for a tie with
// the row before; numbers of Laue class and centering.
enum FoundField {
  founda = 1,
  foundgamma = 6,
  foundvolume,
  foundzero,
  foundesda,
  foundesdgamma = 14,
  foundesdzero,
  foundm20,
  foundf20,
  foundindexed,
  foundlines,
  foundodds,
  foundrelative,
  foundtie,
  foundclass,
  foundcentering,
};

// Angle conversion of the whole program: degrees = radians * RadToDeg, and twice that for the
// two-theta that belongs to an arcsine.
inline constexpr float RadToDeg = 57.29578f;
inline constexpr float TwoRadToDeg = 114.59156f;
inline constexpr float Log10OfE = 0.4342945f;
inline constexpr float CuKalpha1 = 1.54056f;
inline constexpr float CuKalpha2 = 1.54433f;

// What a new pattern puts back to its default: the options of all commands and the view.
struct PerPattern {
  // View
  int analysiskind = 0;  // viewmode 3: 1 FWHM, 2 shape; viewmode 4: 1 size, 2 Williamson-Hall
  int xaxismode = 1;     // an Axis
  int yaxismode = 1;     // 1 linear, 2 decadic logarithm
  int xgrid = 0, ygrid = 0;
  float viewxmin = 0, viewxmax = 0;  // range of the view in the selected axis; both 0: full range
  float viewymin = 0, viewymax = 0;  // viewymax 0: automatic
  int viewexact = 0;                 // 1: drawn with these very limits, else rounded outward
  float bandx1 = 0, bandx2 = 0, bandy1 = 0, bandy2 = 0;  // last rubber band, data units
  int limitsof = 0;  // the axes of viewmode 5 whose ranges these are; 0: of the pattern plot

  Table<float, 9> wavelen{{CuKalpha1, CuKalpha2}};  // alpha1, alpha2, ratio, -, overlays 1-4, -

  // Autosubtract
  int autosubwindow = 201;
  int autosubcycles = 25;
  int autosubscale = 1;     // 1 minimum, 2 scaled with maximum deviation, 3 scaled in interval
  float autosubdev = 5.0f;  // percent
  float fullstart = 0, fullstop = 0;

  // Background
  int manualbgmode = 2;  // 1 linear, 2 spline, 3 Chebyshev
  std::string bgpath;
  float bgscale = 0;
  float bgintstart = 0, bgintend = 0;
  float cryststart = 0, crystend = 0;
  float crystallinity = 0;  // percent; 0: none
  float humpstart = 0, humpend = 0;

  // Modify
  int lpmode = 1;
  int a2steps = 0, a2interp = 0;  // 1 to 6, 1 to 3
  float a2ratio = 0;
  int a2start = 0;
  float muR = 0;         // mu times radius of the capillary
  float mut = 0;         // mu times thickness of the plate
  float plateangle = 0;  // degrees
  int smoothwindow = 3;
  int sgwindow = 5;
  float zeroshift = 0;
  int useorigsteps = 0;
  float scalefactor = 1.0f;
  float savestart = 0, savestep = 0, savestop = 0;
  float origwavelength = 0;
  float newwavelength = CuKalpha1;
  Table<float, 5> polycoef;  // orders 0 to 4
  int chebyorder = 0;
  int chebyused = 0;  // terms of the polynomial in chebycoef
  float chebyxmin = 0, chebyxmax = 0;
  Table<float, MaxChebyshev> chebycoef;

  // Peak search
  int pksmooth = 15;
  float pkminfwhm = 0.05f, pkmaxfwhm = 0.4f;
  float pksigma = 2.0f;

  // Single peak fit
  int spmode = 1;  // 1 minimum halfwidth, 2 Cagliotti
  float spinitwidth = 0.5f;
  int spinithw = 5;
  int spfinalhw = 6;
  float sphwtol = 2.0f;
  float spgeom = 0.9f;
  float spminhw = 0.08f;
  float spu = 0, spv = 0, spw = 0.01f;

  // Save
  int savecontent = 1;  // 1 input/modified, 2 refined, 3 background, 4 all
  int saveformat = 2;   // 1 gdf, 2 xy, 3 dat, 4 cif, 5 tab

  // Overlays and their fit
  int noverlay = 0;
  float displacex = 0, displacey = 0;
  int fitbgorder = 1;
  float fitscale = 1.0f, fitzero = 0;
  int fitscalerefine = 0, fitzerorefine = 0;
  int fitpatmode = 0;    // 0 none, 1 fit, 2 clear
  int fitshown = 0;      // 1 while the fit's result replaces the overlays in the plot
  float profrvalue = 0;  // profile R-value of the last fit; 0: none

  int headerskip = 0;  // leading lines that the xy and dat readers skip

  // What the menu offers once a pattern, and with overlays only
  int alpha2enabled = 1, divergenceenabled = 1;
  int overlayitems = 0;

  bool operator==(const PerPattern&) const = default;
};

// What the whole-pattern fit moves: it begins and ends with these.
struct FitValues {
  Table<float, 6> cell{{10, 10, 10, 90, 90, 90}};  // a, b, c in angstrom, alpha, beta, gamma
  // U, V, W of the squared FWHM in tan(theta), and g1, g2, g3 of the shape in two-theta
  Table<float, 3> fwhmleft, fwhmright;
  Table<float, 3> shapeleft, shaperight;
  Table<float, MaxChebyshev> bgcoef;
  float tthzero = 0;  // added to every two-theta

  bool operator==(const FitValues&) const = default;
};

// What belongs to the program and its user rather than to a pattern: no load and no undo changes
// it.
struct Session {
  std::string editorpath;
  std::string startdir;
  std::string inipath;
  Table<std::string, MaxRecent> recentfiles;
  int recentpending = 0;
  Table<float, 3> caglmin{{0, 0, 0.02f}};
  Table<float, 3> shapemin{{0.5f, 0, 0}};
  int debugmode = 0;
  int batchmode = 0;

  std::string infodepartment, infocompany, infoaddress;

  // The summary file: the table of many patterns' counts, its name and columns
  std::string sumfile;
  int sumopen = 0, sumcount = 0;

  // The script, and the lists of files that it reads and writes
  std::string scriptpath, scriptinlist, scriptoutlist;

  // Whole-pattern fit: its files, and the button that ran it last (1 "Refine", 2 "Calculate")
  std::string fitfile, refineout;
  int fitrun = 0;
  int fitlog = 1;  // 0: it leaves no log, as several fits at once would all have the same
  // What the next fit begins with in place of the fields of its dialog
  std::optional<FitValues> fitstart;

  // By its path a digest of what a file has last given or taken: the points of slot 1, or the peaks
  std::map<std::string, std::uint64_t> kept;
  // E.s.d.s of the counts that a file has stated, and the digest of the points they belong to.
  std::vector<float> statedesd;
  std::uint64_t statedesddigest = 0;

  int toolbar = 1;    // 1 while it is shown
  int legend = 1;     // 1 while the plot names its curves
  int printflag = 0;  // 1 while a hardcopy is drawn
  int epsflag = 0;    // 1 while an EPS file is drawn

  // The series of the dialog: its files, the rows of its table and how many of them tell a failure;
  // the file chosen; 1 map, 2 waterfall, 3 column, 4 pattern; what is drawn against what, blank for
  // the number of the file
  int nseriesfile = 0, nseries = 0, nseriesfailed = 0;
  int seriesrow = 0, seriesview = 4;
  std::string seriestable, seriescolumn, seriesalong, seriessecond;

  // Graphics windows beside the main one, in the order in which they were opened
  Table<int, MaxChildWindows> childwin;
  int nchild = 0;
};

// The points of all slots.
struct PointStore {
  Table<float, 3, MaxSlots, MaxPoints> xval;  // axis, slot, point
  Table<float, MaxSlots, MaxPoints> yval;
  Table<int, MaxSlots> npts;
  Table<int, 4, MaxPoints> ptrefl;  // which reflections reach a point; of use only within a fit
};

// The peak list in rising two-theta order, with one spare row that no reader uses. Rows are added,
// moved and replaced by the routines of peaks/peaklist.h, which keep all tables in step.
struct PeakTables {
  Table<float, 8, MaxPeaks + 1> peaks;
  int npeaks = 0;
  Table<int, MaxPeaks + 1> peakorigin;    // a PeakOrigin
  Table<int, MaxPeaks + 1> peakfailed;    // 1: its last fit has failed and left it as it was
  Table<float, 3, MaxPeaks + 1> peakesd;  // of position, area and FWHM; 0: none
  Table<int, MaxPeaks + 1> peakindexed;   // 0: its indices are those of an earlier list, if any
  int peakchosen = 0;                     // the row chosen in the peak table; 0: none

  bool operator==(const PeakTables&) const = default;
};

struct CrystalStructure;  // multi/structure.h

// Structures that the pattern is compared with. They stay when another one is opened, and so do
// their lines until they are worked out for its wavelength and range.
struct StructureTables {
  int nstructure = 0;
  std::array<std::shared_ptr<const CrystalStructure>, MaxStructures> structures;
  Table<std::string, MaxStructures> structurename, structureformula, structuregroup;
  Table<int, MaxStructures> nstructureline;
  // Two-theta, intensity with 100 for the strongest line, and packed indices of lines 1, 2, ...
  Table<float, MaxStructures, MaxStructureLines> structuretth, structureint;
  Table<int, MaxStructures, MaxStructureLines> structurehkl;
  // What the lines hold for: wavelength, first and last two-theta
  float structurewave = 0, structurefrom = 0, structureto = 0;
  int structurescale = 0;  // 1: drawn over the pattern up to its highest point, not below it

  // As far as the tables are filled.
  bool operator==(const StructureTables& other) const;
};

// What is known of the pattern beside its points: names, header, peaks, results, and how it is
// shown.
struct PatternData : PeakTables {
  // View
  // 0 nothing, 1 pattern, 2 report, 3 width plots, 4 size plots, 5 a view of many patterns
  int viewmode = 0;
  int plotmask = 0;                  // sum of PlotSwitch
  float plotxmin = 0, plotxmax = 0;  // x limits that clip all but the primary curve
  float plotx0 = 0, ploty0 = 0, plotwidth = 0, plotheight = 0;  // plot area, drawing units
  float xperunit = 0, yperunit = 0;                             // data units per drawing unit
  float plotscalex = 1, plotscaley = 1;
  float curvexmin = 0, curvexmax = 0;  // x range of the primary curve's points, before rounding

  // Two-theta of the lines of the cell that is chosen beside the plot, drawn below the frame.
  Table<float, MaxPeaks> celllines;
  int ncelllines = 0;

  // Check marks of the menu. Those of axes and grids follow their commands, not a load.
  int patternloaded = 0;
  int loadcount = 0;  // patterns opened up to this one
  int plotmarks = 0;  // of the Plot menu, as plotmask
  int xaxismark = 1, yaxismark = 1, xgridmark = 0, ygridmark = 0;

  // Names
  std::string patternpath;
  std::string patternstem;
  std::string stem20;  // first 20 characters of patternstem; the title of the plot
  // 1 xy, 2 gdf, 3 txt, 4 uxd, 5 cif, 6 dat, 7 xrdml, 8 udf, 9 chi, 10 any
  int filetype = 0;
  std::string importnote;  // what the import has done to the points of slot 1; blank: nothing

  // Header
  std::string sampleid, instrument, infoline, scandate;
  Table<std::string, 16> gdfhead;  // header lines of a gdf file; line 8 is the exposure time
  Table<std::string, MaxOverlays> overlayname;
  Table<float, 3> scanwave;    // the file's alpha1, alpha2 and their ratio
  float axiswave = CuKalpha1;  // that of the d and Q axes as they stand in xval
  float statedwave = 0;        // alpha1 as the file, or later the user, has stated it; 0: nobody

  // Points set by hand: row 1 two-theta, row 2 counts.
  Table<float, 2, MaxManualPoints> manualbg;
  int nmanualbg = 0;

  float estimatescale = 0;               // of the last estimate of the background
  float humparea = 0, humpposition = 0;  // of the hump measured last; position 0: there is none

  // Results of the last single peak fit
  float spposition = 0, sparea = 0;
  float spfwhmleft = 0, spfwhmmean = 0, spfwhmright = 0;
  float spshapeleft = 0, spshapemean = 0, spshaperight = 0;
  float spsize = 0;  // angstrom

  bool operator==(const PatternData&) const = default;
};

// What the last refinement has found beside the values; fitnpar 0: they are not of a refinement.
struct FitResults {
  float fitrp = 0, fitrwp = 0, fitgof = 0;
  int fitpoints = 0, fitnpar = 0, fitcycles = 0;
  Table<float, MaxChebyshev> bgesd;
  float zeroesd = 0, volumeesd = 0;
  Table<float, 6> fwhmesd, shapeesd;  // left, then right; 0: not refined
  float fitcorrelation = 0;           // the largest, and between which parameters
  std::string fitcorrelated;

  bool operator==(const FitResults&) const = default;
};

// The whole-pattern fit: what its dialog holds, and the results.
struct FitParameters : FitValues, FitResults {
  Table<float, 6> cellesd;
  Table<int, 6> cellrefine;
  // The cell of the last fit, for one that comes without lengths
  Table<float, 6> cellfallback{{10, 10, 10, 90, 90, 90}};
  int laueclass = 1, centering = 1;  // 1 to 16 and 1 to 7

  Table<int, 6> fwhmrefine;  // left, then right
  Table<int, 3> fwhmtie;     // left and right are one parameter
  Table<int, 6> shaperefine;
  Table<int, 3> shapetie;

  int bgorder = 5;  // Chebyshev terms; 0: the estimated background
  int tthzerorefine = 0;

  int ncycles = 25, nbkgcycles = 1;
  float maxshift = 0.3f;  // in e.s.d.s
  int nfwhmpeak = 6;      // reach of a peak
  float diagdamp = 1.05f;
  int everynth = 1;
  float minfwhmsep = 0.1f;  // in FWHM; nearer peaks share an intensity
  float fitmin2th = 5, fitmax2th = 150;
  int fitposmode = 2;   // 1 individual positions, 2 unit cell
  int fitfwhmmode = 2;  // 1 individual, 2 Caglioti

  bool operator==(const FitParameters&) const = default;
};

// Indexing: files, parameters of the engines, solutions. They are as lasting as the files, whatever
// is taken back.
struct Indexing {
  std::string peakfilename, indexoutfile;  // the list of peaks, the listing; blank: none yet
  // Form of the lines: 1 sinsq(th), 2 1/dsq, 3 theta, 4 2theta, 5 d. Of what is 0 or blank, the
  // dialogs open with a value of their own.
  int itoform = 4, treform = 4;
  float itowave = 0, itozero = 0;
  int itomaxlines = 0;
  float itotol1 = 0, itotol2 = 0;
  int itofom = 0, itolines = 0;
  float trewave = 0, trevol = 0, treedge = 0, tred1 = 0, tred2 = 0;
  int tremerit = 0, trenix = -1;  // -1 stands for the dialog's own value, as 0 is one to enter

  SolutionTable solutions;  // read last from a listing
  int nsolutions = 0;
  int selsolution = 0;  // the row chosen, 0 for none

  // The cells found last, best first; of each its lattice as "orthorhombic P", who has found it and
  // the numbers of the lines that it leaves.
  Table<float, MaxFoundCells, foundcentering> findcell;
  Table<std::string, MaxFoundCells> findlattice, findorigin, findunexplained;
  int nfindcell = 0;
  int selfindcell = 0;  // the row chosen, 0 for none

  bool operator==(const Indexing&) const = default;
};

// What a script does to every file of its list, beside the options of the commands it holds.
struct Scripting {
  int scriptinfmt = 0;   // 1 gdf, 2 xy, 3 dat, 4 udf, 5 txt, 6 any
  int scriptoutfmt = 0;  // 1 gdf, 2 xy, 3 cif, 4 dat, 5 one table of all files
  int scriptusezero = 0, scriptusetrun = 0, scriptusescal = 0, scriptusesmoo = 0;
  int scriptusesago = 0, scriptuseconv = 0, scriptusebkgr = 0, scriptuseskip = 0;
  int scaletype = 0, scalefrom = 0, scaleto = 0;
  float convstart = 0, convstop = 0, convstep = 0;  // the limits that CONV keeps beside TRUN's

  bool operator==(const Scripting&) const = default;
};

struct Workspace : Session,
                   PointStore,
                   PatternData,
                   StructureTables,
                   FitParameters,
                   PerPattern,
                   Indexing,
                   Scripting {};

extern Workspace ws;

// Puts all options of the pattern, of indexing and of scripts back to their defaults.
void ResetWorkspace();

// Fills the d and Q axes of slot 1 with wavelen(1), copies all three axes to slots 2 to 4, and
// fills d and Q of each overlay with its own wavelength. A two-theta of 0 gives d 0 and Q 0. The
// curve of a fit of an overlay keeps its two-theta.
void ComputeXAxes();

// The same for the d and Q of one slot.
void ComputeSlotAxes(int slot, float wavelength);

// The pattern that is drawn first and that the Modify and Background commands work on, by
// `plotmask`: 1, 4, 3 or 2.
int ActiveSlot();

// Number of points of a slot up to the last one with counts, whatever npts says.
int CountsEnd(int slot);
// Makes all counts of a slot 0. Where they are 0 nothing is written: a process that shares its
// memory with the one it comes from keeps sharing it.
void ClearCounts(int slot);

// Ends the fit of an overlay, if one stands: for all that changes its curves. Slot 4 is left empty,
// on the points of slot 1.
void EndOverlayFit();

// The points of slot 1 are those of a file: they have been loaded, or saved. Whether there is such
// a file still, which another save may have replaced.
void NotePointsKept(const std::string& path);
bool PointsAreKept();
// The e.s.d.s that the file of slot 1 has stated, as many as points. They are told as long as the
// points are those of the file: of what has been changed there are none.
void StateEsds(std::vector<float> esds);
std::span<const float> StatedEsds();
// The same of the peak list when it has been saved. What has not been picked or fitted can be had
// again, and needs no file.
void NotePeaksKept(const std::string& path);
bool PeaksAreKept();

// Empties the peak list and the refined curve and puts the fit's parameters to their defaults.
void ClearPeakFit();
