// The Workspace by name, for transcripts that look at it.
#include <algorithm>
#include <charconv>
#include <functional>
#include <map>
#include <vector>

#include "shell/shell.h"
#include "workspace/workspace.h"

namespace {

// A field as its extents, empty for a scalar, and the text of a cell.
struct NamedField {
  std::vector<int> extents;
  std::function<std::string(std::size_t)> cell;
};

std::string ValueText(int value) { return std::to_string(value); }

std::string ValueText(float value) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, static_cast<double>(value),
                                 std::chars_format::general, 9);
  return std::string(digits, end.ptr);
}

// Tabs part the cells, so that none can stand in one.
std::string ValueText(std::string value) {
  std::ranges::replace(value, '\t', ' ');
  return value;
}

template <class T>
NamedField Named(const T& field) {
  return {{}, [&field](std::size_t) { return ValueText(field); }};
}

template <class T, int... N>
NamedField Named(const Table<T, N...>& field) {
  return {{N...}, [&field](std::size_t k) { return ValueText(field.cells[k]); }};
}

// All fields, group by group.
// clang-format off
#define FIELDS(F) \
  F(patternloaded) F(loadcount) F(plotmarks) F(xaxismark) F(yaxismark) F(xgridmark) F(ygridmark) \
    F(alpha2enabled) F(divergenceenabled) F(overlayitems) \
  F(xval) F(yval) F(npts) F(ptrefl) \
  F(viewmode) F(analysiskind) F(plotmask) F(xaxismode) F(yaxismode) F(xgrid) F(ygrid) \
  F(viewxmin) F(viewxmax) F(viewymin) F(viewymax) F(viewexact) \
  F(bandx1) F(bandx2) F(bandy1) F(bandy2) \
  F(plotxmin) F(plotxmax) F(plotx0) F(ploty0) F(plotwidth) F(plotheight) F(xperunit) F(yperunit) \
    F(plotscalex) F(plotscaley) F(curvexmin) F(curvexmax) F(celllines) F(ncelllines) \
  F(nstructure) F(structurename) F(structureformula) F(structuregroup) F(nstructureline) \
    F(structuretth) F(structureint) F(structurehkl) F(structurewave) F(structurefrom) \
    F(structureto) F(structurescale) \
  F(toolbar) F(legend) F(printflag) F(epsflag) \
  F(patternpath) F(patternstem) F(stem20) F(filetype) F(importnote) F(peakfilename) \
  F(editorpath) F(startdir) F(inipath) F(recentfiles) F(recentpending) F(caglmin) F(shapemin) \
  F(debugmode) F(batchmode) \
  F(sampleid) F(infodepartment) F(infocompany) F(infoaddress) F(instrument) F(infoline) \
    F(scandate) F(gdfhead) F(overlayname) \
  F(wavelen) F(scanwave) F(axiswave) F(statedwave) F(peaks) F(npeaks) F(peakorigin) \
    F(peakfailed) F(peakesd) F(peakindexed) F(peakchosen) F(manualbg) F(nmanualbg) \
  F(nchild) F(childwin) \
  F(autosubwindow) F(autosubcycles) F(autosubscale) F(autosubdev) F(estimatescale) F(fullstart) F(fullstop) \
  F(manualbgmode) F(bgpath) F(bgscale) F(bgintstart) F(bgintend) F(cryststart) F(crystend) \
    F(crystallinity) F(humpstart) F(humpend) F(humparea) F(humpposition) \
  F(lpmode) F(a2steps) F(a2interp) F(a2ratio) F(a2start) \
  F(muR) F(mut) F(plateangle) F(smoothwindow) F(sgwindow) \
  F(zeroshift) F(useorigsteps) F(scalefactor) F(savestart) F(savestep) F(savestop) \
  F(origwavelength) F(newwavelength) F(polycoef) \
  F(chebyorder) F(chebyused) F(chebyxmin) F(chebyxmax) F(chebycoef) F(bgcoef) \
  F(pksmooth) F(pkminfwhm) F(pkmaxfwhm) F(pksigma) \
  F(spmode) F(spinitwidth) F(spinithw) F(spfinalhw) F(sphwtol) F(spgeom) F(spminhw) F(spu) \
    F(spv) F(spw) \
  F(spposition) F(sparea) F(spfwhmleft) F(spfwhmmean) F(spfwhmright) F(spshapeleft) \
    F(spshapemean) F(spshaperight) F(spsize) \
  F(savecontent) F(saveformat) \
  F(noverlay) F(displacex) F(displacey) \
  F(fitbgorder) F(fitscale) F(fitzero) F(fitscalerefine) F(fitzerorefine) F(fitpatmode) \
    F(fitshown) F(profrvalue) \
  F(cell) F(cellesd) F(cellrefine) F(cellfallback) F(laueclass) F(centering) \
    F(fwhmleft) F(fwhmright) F(fwhmrefine) F(fwhmtie) \
    F(shapeleft) F(shaperight) F(shaperefine) F(shapetie) \
    F(bgorder) F(tthzero) F(tthzerorefine) F(ncycles) F(nbkgcycles) F(maxshift) F(nfwhmpeak) \
    F(diagdamp) F(everynth) F(minfwhmsep) F(fitmin2th) F(fitmax2th) F(fitposmode) F(fitfwhmmode) \
    F(fitrp) F(fitrwp) F(fitgof) F(fitpoints) F(fitnpar) F(fitcycles) F(bgesd) F(zeroesd) \
    F(volumeesd) F(fwhmesd) F(shapeesd) F(fitcorrelation) F(fitcorrelated) \
    F(fitfile) F(refineout) F(fitrun) \
  F(headerskip) \
  F(indexoutfile) F(itoform) F(itowave) F(itozero) F(itomaxlines) F(itotol1) F(itotol2) F(itofom) \
    F(itolines) F(treform) F(trewave) F(trevol) F(treedge) F(tred1) F(tred2) F(tremerit) F(trenix) \
    F(solutions) F(nsolutions) F(selsolution) \
    F(findcell) F(findlattice) F(findorigin) F(findunexplained) F(nfindcell) F(selfindcell) \
  F(sumfile) F(sumopen) F(sumcount) \
  F(nseriesfile) F(nseries) F(nseriesfailed) F(seriesrow) F(seriesview) F(seriestable) \
    F(seriescolumn) F(seriesalong) F(seriessecond) \
  F(scriptpath) F(scriptinlist) F(scriptoutlist) F(scriptinfmt) F(scriptoutfmt) \
    F(scriptusezero) F(scriptusetrun) F(scriptusescal) F(scriptusesmoo) F(scriptusesago) \
    F(scriptuseconv) F(scriptusebkgr) F(scriptuseskip) F(scaletype) F(scalefrom) F(scaleto) \
    F(convstart) F(convstop) F(convstep)
// clang-format on

const std::map<std::string_view, NamedField>& Fields() {
#define FIELD(name) {#name, Named(ws.name)},
  static const std::map<std::string_view, NamedField> fields{FIELDS(FIELD)};
#undef FIELD
  return fields;
}

struct IndexRange {
  int first, last;
};

// "5" or "5:10" within 1 to `extent`.
std::optional<IndexRange> ParseIndex(std::string_view text, int extent) {
  const char* const end = text.data() + text.size();
  IndexRange range{};
  auto read = std::from_chars(text.data(), end, range.first);
  range.last = range.first;
  if (read.ec == std::errc() && read.ptr != end && *read.ptr == ':')
    read = std::from_chars(read.ptr + 1, end, range.last);
  if (read.ec != std::errc() || read.ptr != end) return {};
  if (range.first < 1 || range.last > extent || range.first > range.last) return {};
  return range;
}

// The index list of "name(1,2:3)", one range for each extent; without a list the whole field.
std::optional<std::vector<IndexRange>> ParseIndices(std::string_view list,
                                                    const std::vector<int>& extents) {
  std::vector<IndexRange> ranges;
  if (list.empty()) {
    for (int extent : extents) ranges.push_back({1, extent});
    return ranges;
  }
  list = list.substr(1, list.size() - 2);
  if (std::ranges::count(list, ',') + 1 != std::ssize(extents)) return {};
  for (int extent : extents) {
    const std::size_t comma = std::min(list.find(','), list.size());
    const auto range = ParseIndex(list.substr(0, comma), extent);
    if (!range) return {};
    ranges.push_back(*range);
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return ranges;
}

// Every cell is followed by a tab.
void AppendCells(const NamedField& field, const std::vector<IndexRange>& ranges, std::size_t depth,
                 std::size_t place, std::string& text) {
  if (depth == ranges.size()) {
    text += field.cell(place) + '\t';
    return;
  }
  for (int k = ranges[depth].first; k <= ranges[depth].last; ++k)
    AppendCells(field, ranges, depth + 1, place * field.extents[depth] + k - 1, text);
}

}  // namespace

std::optional<std::string> FieldText(std::string_view name) {
  const std::size_t open = std::min(name.find('('), name.size());
  const auto field = Fields().find(name.substr(0, open));
  const std::string_view list = name.substr(open);
  if (field == Fields().end() || (!list.empty() && !list.ends_with(')'))) return {};
  const auto ranges = ParseIndices(list, field->second.extents);
  if (!ranges) return {};
  std::string text;
  AppendCells(field->second, *ranges, 0, 0, text);
  text.pop_back();
  return text;
}
