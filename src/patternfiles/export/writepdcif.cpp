// The pattern as a block of CIF's powder dictionary.
//
//   #\#CIF_1.1
//   data_corundum
//   _audit_creation_method Quillagram
//   _audit_creation_date 2014-02-01
//   _pd_block_id 2014-02-01T09:30|corundum|Quillagram|Philips_PW_3710
//   _pd_spec_description corundum
//   _diffrn_radiation_probe x-ray
//   _diffrn_radiation_wavelength 1.540598
//   _pd_meas_number_of_points 3
//   _pd_meas_2theta_range_min 5
//   _pd_meas_2theta_range_max 5.04
//   _pd_meas_2theta_range_inc 0.02
//
//   loop_
//   _pd_meas_counts_total
//   187
//   183
//   178
#include <algorithm>
#include <cmath>
#include <optional>

#include "crystal/cellmetric.h"
#include "patternfiles/export/ciftext.h"
#include "patternfiles/export/columns.h"
#include "patternfiles/export/export.h"
#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr const char* kProgram = "Quillagram";
constexpr int kUnitCellPositions = 2;  // fitposmode

class Block {
 public:
  void Line(const std::string& line) { lines.push_back(line); }
  void Item(std::string_view tag, std::string_view value) {
    const auto item = CifItem(tag, value);
    lines.insert(lines.end(), item.begin(), item.end());
  }
  // Unless it is blank.
  void Known(std::string_view tag, std::string_view value) {
    if (!Trim(value).empty()) Item(tag, value);
  }
  std::vector<std::string> lines;
};

std::string Number(float value) { return std::isfinite(value) ? AllDigits(value) : "."; }

// ---- The measurement ----

void AddAudit(Block& block) {
  const int date = IOsDate(), time = IOsTime();
  const std::string today = WriteRecord<"(i4.4,'-',i2.2,'-',i2.2)">(date / 10000, date / 100 % 100,
                                                                    date % 100),
                    now = WriteRecord<"('T',i2.2,':',i2.2)">(time / 10000, time / 100 % 100);
  block.Item("_audit_creation_method", kProgram);
  block.Item("_audit_creation_date", today);
  block.Item("_pd_block_id", today + now + "|" + CifIdSection(ws.patternstem) + "|" + kProgram +
                                 "|" + CifIdSection(ws.instrument));
  block.Known("_pd_spec_description", ws.sampleid);
  block.Known("_pd_meas_datetime_initiated", CifDate(ws.scandate));
  block.Known("_diffrn_measurement_device_type", ws.instrument);
}

// A wavelength that nobody has stated is not told. The second one is gone after stripping, and
// after a conversion the pattern has but one.
void AddWavelengths(Block& block) {
  block.Item("_diffrn_radiation_probe", "x-ray");
  if (!(ws.statedwave > 0)) return;
  const std::string first = AllDigits(ws.axiswave);
  const float ratio = ws.scanwave(3);
  const bool both = ratio > 0 && ws.scanwave(1) == ws.axiswave && ws.alpha2enabled;
  if (!both) return block.Item("_diffrn_radiation_wavelength", first);
  for (const std::string& line :
       {std::string("loop_"), std::string("_diffrn_radiation_wavelength_id"),
        std::string("_diffrn_radiation_wavelength"), std::string("_diffrn_radiation_wavelength_wt"),
        "1 " + first + " 1", "2 " + AllDigits(ws.scanwave(2)) + ' ' + AllDigits(ratio)})
    block.Line(line);
}

// ---- The refinement ----

void AddCell(Block& block) {
  if (ws.fitnpar < 1 || ws.fitposmode != kUnitCellPositions) return;
  static constexpr const char* kTags[] = {"_cell_length_a",   "_cell_length_b",
                                          "_cell_length_c",   "_cell_angle_alpha",
                                          "_cell_angle_beta", "_cell_angle_gamma"};
  for (int k = 0; k < 6; ++k)
    block.Item(kTags[k], WithEsd(ws.cell.cells[k], ws.cellesd.cells[k], k < 3 ? 5 : 4));
  block.Item("_cell_volume", WithEsd(CellVolume(ws.cell), ws.volumeesd, 3));
}

void AddFactors(Block& block) {
  if (ws.fitnpar < 1) return;
  block.Item("_pd_proc_ls_prof_R_factor", Fixed(ws.fitrp, 5));
  block.Item("_pd_proc_ls_prof_wR_factor", Fixed(ws.fitrwp, 5));
  block.Item("_pd_proc_ls_special_details",
             "Fit of the whole pattern with free intensities; all weights are 1");
}

// ---- The points ----

// The two-theta of an even grid lie on it within what a float can tell of them.
struct EvenGrid {
  float first, last;
  std::string step;
};

std::optional<EvenGrid> FindEvenGrid(std::span<const float> x) {
  constexpr double kTolerance = 2e-5;  // degrees
  constexpr int kLeast = 2, kMost = 10;
  if (x.size() < 3) return std::nullopt;
  const double first = x.front(), mean = (x.back() - first) / static_cast<double>(x.size() - 1);
  for (int decimals = kLeast; decimals <= kMost; ++decimals) {
    const double unit = std::pow(10.0, decimals), step = std::round(mean * unit) / unit;
    const auto off = [&, i = 0](float tth) mutable {
      return !(std::abs(first + i++ * step - tth) <= kTolerance);
    };
    if (step > 0 && std::ranges::none_of(x, off))
      return EvenGrid{x.front(), x.back(), Fixed(step, decimals)};
  }
  return std::nullopt;
}

// All digits of the value, and the e.s.d. in units of the last one; of the e.s.d. two digits.
std::string WithBrackets(float value, float esd) {
  constexpr int kMost = 9;
  std::string text = Number(value);
  if (!(esd > 0 && esd < 1e9f) || !std::isfinite(value)) return text;
  if (text.find('.') == std::string::npos) text += '.';
  int decimals = static_cast<int>(text.size() - text.find('.')) - 1;
  const int needed = std::clamp(1 - static_cast<int>(std::floor(std::log10(esd))), 0, kMost);
  if (needed > decimals) text.append(static_cast<std::size_t>(needed - decimals), '0');
  decimals = std::max(decimals, needed);
  if (text.ends_with('.')) text.pop_back();
  if (decimals > kMost) return text;  // a number next to 0
  return text + '(' + std::to_string(std::llround(esd * std::pow(10.0, decimals))) + ')';
}

struct Cells {
  const char* tag;
  std::vector<std::string> values;
};

std::vector<std::string> Numbers(std::span<const float> values) {
  std::vector<std::string> texts(values.size());
  std::ranges::transform(values, texts.begin(), Number);
  return texts;
}

// Of counts e.s.d.s are not told: they are known to be square roots.
Cells Intensities() {
  const std::span<const float> counts = IntensityOf(SlotInput), esds = StatedEsds();
  if (esds.empty())
    return {HasCounts() ? "_pd_meas_counts_total" : "_pd_meas_intensity_total", Numbers(counts)};
  std::vector<std::string> texts(counts.size());
  std::ranges::transform(counts, esds, texts.begin(), WithBrackets);
  return {"_pd_meas_intensity_total", std::move(texts)};
}

void AddPoints(Block& block) {
  std::vector<Cells> columns;
  const std::span<const float> x = TthOf(SlotInput);
  block.Item("_pd_meas_number_of_points", std::to_string(x.size()));
  if (const auto grid = FindEvenGrid(x)) {
    block.Item("_pd_meas_2theta_range_min", Number(grid->first));
    block.Item("_pd_meas_2theta_range_max", Number(grid->last));
    block.Item("_pd_meas_2theta_range_inc", grid->step);
  } else {
    columns.push_back({"_pd_meas_2theta_scan", Numbers(x)});
  }
  columns.push_back(Intensities());
  columns.push_back({"_pd_calc_intensity_total", Numbers(ShownCalculated())});
  columns.push_back({"_pd_proc_intensity_bkg_calc", Numbers(ShownBackground())});
  std::erase_if(columns, [](const Cells& column) { return column.values.empty(); });

  block.Line("");
  block.Line("loop_");
  for (const Cells& column : columns) block.Line(column.tag);
  for (std::size_t i = 0; i < x.size(); ++i) {
    std::string line;
    for (const Cells& column : columns) line += (line.empty() ? "" : " ") + column.values[i];
    block.Line(line);
  }
}

}  // namespace

std::vector<std::string> PatternAsPdCif() {
  Block block;
  block.Line("#\\#CIF_1.1");
  block.Line(CifBlockHead(ws.patternstem));
  AddAudit(block);
  AddWavelengths(block);
  AddCell(block);
  AddFactors(block);
  AddPoints(block);
  return std::move(block.lines);
}
