// The Workspace by name, for transcripts that look at it.
#include <array>
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

std::string ValueText(const std::string& value) { return value; }

template <class T>
NamedField Named(const T& field) {
  return {{}, [&field](std::size_t) { return ValueText(field); }};
}

template <class T, int... N>
NamedField Named(const Table<T, N...>& field) {
  return {{N...}, [&field](std::size_t k) { return ValueText(field.cells[k]); }};
}

const std::map<std::string_view, NamedField>& Fields() {
#define FIELD(name) \
  { #name, Named(ws.name) }
  static const std::map<std::string_view, NamedField> fields{FIELD(xval),
                                                             FIELD(yval),
                                                             FIELD(npts),
                                                             FIELD(ptrefl),
                                                             FIELD(viewmode),
                                                             FIELD(analysiskind),
                                                             FIELD(plotmask),
                                                             FIELD(xaxismode),
                                                             FIELD(yaxismode),
                                                             FIELD(xgrid),
                                                             FIELD(ygrid),
                                                             FIELD(viewxmin),
                                                             FIELD(viewxmax),
                                                             FIELD(viewymin),
                                                             FIELD(viewymax),
                                                             FIELD(bandx1),
                                                             FIELD(bandx2),
                                                             FIELD(bandy1),
                                                             FIELD(bandy2),
                                                             FIELD(plotxmin),
                                                             FIELD(plotxmax),
                                                             FIELD(plotx0),
                                                             FIELD(ploty0),
                                                             FIELD(plotwidth),
                                                             FIELD(plotheight),
                                                             FIELD(xperunit),
                                                             FIELD(yperunit),
                                                             FIELD(plotscalex),
                                                             FIELD(plotscaley),
                                                             FIELD(printflag),
                                                             FIELD(epsflag),
                                                             FIELD(patternpath),
                                                             FIELD(patternstem),
                                                             FIELD(stem20),
                                                             FIELD(filetype),
                                                             FIELD(peakfilename),
                                                             FIELD(editorpath),
                                                             FIELD(startdir),
                                                             FIELD(inipath),
                                                             FIELD(recentfiles),
                                                             FIELD(recentpending),
                                                             FIELD(caglmin),
                                                             FIELD(shapemin),
                                                             FIELD(debugmode),
                                                             FIELD(batchmode),
                                                             FIELD(sampleid),
                                                             FIELD(infodepartment),
                                                             FIELD(infocompany),
                                                             FIELD(infoaddress),
                                                             FIELD(instrument),
                                                             FIELD(infoline),
                                                             FIELD(scandate),
                                                             FIELD(gdfhead),
                                                             FIELD(overlayname),
                                                             FIELD(wavelen),
                                                             FIELD(scanwave),
                                                             FIELD(peaks),
                                                             FIELD(npeaks),
                                                             FIELD(manualbg),
                                                             FIELD(nmanualbg),
                                                             FIELD(nchild),
                                                             FIELD(childwin),
                                                             FIELD(autosubwindow),
                                                             FIELD(autosubcycles),
                                                             FIELD(autosubscale),
                                                             FIELD(autosubdev),
                                                             FIELD(fullstart),
                                                             FIELD(fullstop),
                                                             FIELD(manualbgmode),
                                                             FIELD(bgpath),
                                                             FIELD(bgscale),
                                                             FIELD(bgintstart),
                                                             FIELD(bgintend),
                                                             FIELD(cryststart),
                                                             FIELD(crystend),
                                                             FIELD(crystallinity),
                                                             FIELD(lpmode),
                                                             FIELD(a2steps),
                                                             FIELD(a2interp),
                                                             FIELD(a2ratio),
                                                             FIELD(a2start),
                                                             FIELD(muR),
                                                             FIELD(mut),
                                                             FIELD(plateangle),
                                                             FIELD(smoothwindow),
                                                             FIELD(sgwindow),
                                                             FIELD(zeroshift),
                                                             FIELD(useorigsteps),
                                                             FIELD(scalefactor),
                                                             FIELD(savestart),
                                                             FIELD(savestep),
                                                             FIELD(savestop),
                                                             FIELD(origwavelength),
                                                             FIELD(newwavelength),
                                                             FIELD(polycoef),
                                                             FIELD(chebyorder),
                                                             FIELD(chebyused),
                                                             FIELD(chebyxmin),
                                                             FIELD(chebyxmax),
                                                             FIELD(chebycoef),
                                                             FIELD(bgcoef),
                                                             FIELD(pksmooth),
                                                             FIELD(pkminfwhm),
                                                             FIELD(pkmaxfwhm),
                                                             FIELD(pksigma),
                                                             FIELD(spmode),
                                                             FIELD(spinitwidth),
                                                             FIELD(spinithw),
                                                             FIELD(spfinalhw),
                                                             FIELD(sphwtol),
                                                             FIELD(spgeom),
                                                             FIELD(spminhw),
                                                             FIELD(spu),
                                                             FIELD(spv),
                                                             FIELD(spw),
                                                             FIELD(spposition),
                                                             FIELD(sparea),
                                                             FIELD(spfwhmleft),
                                                             FIELD(spfwhmmean),
                                                             FIELD(spfwhmright),
                                                             FIELD(spshapeleft),
                                                             FIELD(spshapemean),
                                                             FIELD(spshaperight),
                                                             FIELD(spsize),
                                                             FIELD(savecontent),
                                                             FIELD(saveformat),
                                                             FIELD(noverlay),
                                                             FIELD(displacex),
                                                             FIELD(displacey),
                                                             FIELD(fitbgorder),
                                                             FIELD(fitscale),
                                                             FIELD(fitzero),
                                                             FIELD(fitscalerefine),
                                                             FIELD(fitzerorefine),
                                                             FIELD(fitpatmode),
                                                             FIELD(fitshown),
                                                             FIELD(profrvalue),
                                                             FIELD(headerskip),
                                                             FIELD(itoform),
                                                             FIELD(treform)};
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
  for (int extent : extents) {
    const std::size_t comma = std::min(list.find(','), list.size());
    const auto range = ParseIndex(list.substr(0, comma), extent);
    if (!range) return {};
    ranges.push_back(*range);
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  if (!list.empty() || extents.empty()) return {};
  return ranges;
}

void AppendCells(const NamedField& field, const std::vector<IndexRange>& ranges, std::size_t depth,
                 std::size_t place, std::string& text) {
  if (depth == ranges.size()) {
    if (!text.empty()) text += '\t';
    text += field.cell(place);
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
  return text;
}
