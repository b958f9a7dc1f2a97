// Powder patterns in CIF, by the names of the powder dictionary.
//
//   data_quartz
//   _diffrn_radiation_wavelength  1.5406
//   loop_
//     _pd_meas_2theta_scan _pd_meas_counts_total _pd_calc_intensity_total
//     10.00 1234 1201.7
//     10.02 1250 1198.3
//
// A block with points is a scan. Its wavelength and its sample may stand in another block.
#include <algorithm>
#include <cmath>
#include <set>
#include <span>

#include "patternfiles/import/dates.h"
#include "patternfiles/import/gemmi/cifblocks.h"
#include "patternfiles/import/markup.h"

namespace {

// The measured ones first; what has been calculated is none.
constexpr const char* kCounts[] = {"_pd_meas_counts_total", "_pd_meas_intensity_total",
                                   "_pd_proc_intensity_total", "_pd_proc_intensity_net"};
struct Position {
  const char* tag;
  ScanAxis axis = ScanAxis::TwoTheta;
};
constexpr Position kAngles[] = {{"_pd_meas_2theta_scan"},
                                {"_pd_meas_angle_2theta"},
                                {"_pd_meas_2theta_corrected"},
                                {"_pd_proc_2theta_corrected"}};
constexpr Position kSpacings[] = {{"_pd_proc_d_spacing", ScanAxis::D},
                                  {"_pd_proc_recip_len_q", ScanAxis::Q}};
// Names of patterns without angles.
constexpr struct {
  const char *tag, *what;
} kOtherKinds[] = {
    {"_pd_meas_time_of_flight", "a time-of-flight pattern, which has no angles"},
    {"_pd_meas_time_of_flight_range_min", "a time-of-flight pattern, which has no angles"},
    {"_pd_proc_energy_detection", "an energy-dispersive pattern"},
    {"_pd_proc_energy_incident", "an energy-dispersive pattern"}};

// A column of positions with as many rows as there are counts.
bool TakeColumn(const CifBlock& block, std::span<const Position> tags, MeasuredScan& scan) {
  for (const Position& position : tags) {
    const CifValues* values = block.Find(position.tag);
    if (!values || values->count != scan.counts.size()) continue;
    scan.x = CifNumbersIn(*values);
    scan.axis = position.axis;
    if (std::ranges::any_of(scan.x, [](double x) { return std::isfinite(x); })) return true;
  }
  return false;
}

// The step of a range that is to have as many points; none if they do not fit it. A step that has
// been rounded gives way to the end of the range.
std::optional<double> StepOfRange(std::optional<double> step, double first,
                                  std::optional<double> last, std::size_t points) {
  constexpr double kPointsAmiss = 1.5, kRounding = 0.05;
  if (!last || points < 2) return step;
  const double steps = static_cast<double>(points - 1), even = (*last - first) / steps;
  if (!step) return even;
  const double amiss = std::abs(even - *step) / std::abs(*step);
  if (amiss * steps <= kPointsAmiss) return step;
  return amiss <= kRounding ? std::optional(even) : std::nullopt;
}

bool TakeRange(const CifBlock& block, MeasuredScan& scan) {
  for (const std::string kind : {"_pd_meas_2theta_range_", "_pd_proc_2theta_range_"}) {
    const auto first = block.Number(kind + "min");
    if (!first) continue;
    const auto step = StepOfRange(block.Number(kind + "inc"), *first, block.Number(kind + "max"),
                                  scan.counts.size());
    if (!step || *step == 0) continue;
    scan.x.clear();
    for (std::size_t i = 0; i < scan.counts.size(); ++i)
      scan.x.push_back(*first + static_cast<double>(i) * *step);
    scan.axis = ScanAxis::TwoTheta;
    return true;
  }
  return false;
}

// As many numbers as there are counts, 0 where one is unknown; none without such a column.
std::vector<double> ColumnBeside(const CifBlock& block, const std::string& tag, std::size_t rows) {
  const CifValues* values = block.Find(tag);
  if (!values || values->count != rows) return {};
  std::vector<double> numbers(rows, 0);
  for (std::size_t i = 0; i < rows; ++i)
    if (const auto number = CifNumberIn((*values)[i])) numbers[i] = number->value;
  return numbers;
}

// From brackets, a column of their own, or weights 1/esd^2: the first of them that tells anything.
// A point of which it tells nothing has the e.s.d. of its counts.
std::vector<double> EsdsOf(const CifBlock& block, const std::string& tag, const MeasuredScan& scan,
                           const CifValues& counts) {
  std::vector<double> inbrackets(counts.count, 0);
  for (std::size_t i = 0; i < counts.count; ++i)
    if (const auto number = CifNumberIn(counts[i])) inbrackets[i] = number->su;
  std::vector<double> byweight = ColumnBeside(block, "_pd_proc_ls_weight", counts.count);
  for (double& each : byweight) each = each > 0 ? 1 / std::sqrt(each) : 0;
  const auto isesd = [](double esd) { return esd > 0 && std::isfinite(esd); };
  for (std::vector<double> esd :
       {inbrackets, ColumnBeside(block, tag + "_su", counts.count), byweight}) {
    if (std::ranges::none_of(esd, isesd)) continue;
    for (std::size_t i = 0; i < esd.size(); ++i)
      if (!isesd(esd[i])) esd[i] = std::sqrt(std::max(scan.counts[i], 1.0));
    return esd;
  }
  return {};
}

// A block's own name in the file and those of the blocks that it speaks of.
struct Links {
  std::string id;
  std::set<std::string> diffractograms, phases;
};

Links LinksOf(const CifBlock& block) {
  const auto listed = [&](const char* tag) {
    std::set<std::string> names;
    const CifValues* values = block.Find(tag);
    for (std::size_t i = 0; values && i < values->count; ++i) names.insert(CifText((*values)[i]));
    return names;
  };
  return {block.Text({"_pd_block_id"}), listed("_pd_block_diffractogram_id"),
          listed("_pd_phase_block_id")};
}

bool AreLinked(const Links& pattern, const Links& other) {
  const bool named = !pattern.id.empty() && other.diffractograms.contains(pattern.id);
  return named || (!other.id.empty() && (pattern.diffractograms.contains(other.id) ||
                                         pattern.phases.contains(other.id)));
}

struct Cif {
  CifBlocks blocks;
  std::vector<Links> links;  // of the blocks
};

// The block that tells something of a pattern: its own, or else the only one that is linked with
// it, or else the only one of the file.
template <class Tells>
const CifBlock* BlockThatTells(const Cif& cif, std::size_t own, Tells tells) {
  if (tells(cif.blocks[own])) return &cif.blocks[own];
  for (const bool linked : {true, false}) {
    const CifBlock* teller = nullptr;
    int found = 0;
    for (std::size_t i = 0; i < cif.blocks.size(); ++i) {
      if ((linked && !AreLinked(cif.links[own], cif.links[i])) || !tells(cif.blocks[i])) continue;
      teller = &cif.blocks[i];
      ++found;
    }
    if (found > 0) return found == 1 ? teller : nullptr;
  }
  return nullptr;
}

constexpr const char* kWavelengths[] = {"_diffrn_radiation_wavelength",
                                        "_diffrn_radiation_wavelength_value", "_pd_proc_wavelength",
                                        "_pd_meas_wavelength"};

const CifValues* WavelengthsIn(const CifBlock& block) {
  for (const char* tag : kWavelengths)
    if (const CifValues* values = block.Find(tag); values && CifNumberIn((*values)[0]))
      return values;
  return nullptr;
}

// The strongest of a list of wavelengths and the next strongest so close to it that both are parts
// of one doublet.
void TakeWavelengths(const CifBlock& block, MeasuredScan& scan) {
  constexpr double kDoublet = 0.01;
  const CifValues& values = *WavelengthsIn(block);
  std::vector<double> weight = ColumnBeside(block, "_diffrn_radiation_wavelength_wt", values.count);
  weight.resize(values.count);
  std::array<double, 2> best{-1, -1};
  for (const int part : {0, 1})
    for (std::size_t i = 0; i < values.count; ++i) {
      const auto number = CifNumberIn(values[i]);
      if (!number || !(number->value > 0) || weight[i] <= best[part]) continue;
      const double ratio = part == 0 ? 2 : number->value / scan.wavelengths[0];
      if (part == 1 && (ratio == 1 || std::abs(ratio - 1) > kDoublet)) continue;
      scan.wavelengths[part] = number->value;
      best[part] = weight[i];
    }
  if (best[0] > 0 && best[1] > 0) scan.ratio = best[1] / best[0];
}

std::string SampleOf(const CifBlock& block) {
  return block.Text({"_chemical_name_common", "_chemical_name_systematic", "_chemical_name_mineral",
                     "_pd_phase_name", "_chemical_formula_sum"});
}

void Describe(const Cif& cif, std::size_t place, MeasuredScan& scan) {
  const CifBlock& own = cif.blocks[place];
  scan.label = own.name;
  scan.seconds = std::max(own.Number("_pd_meas_step_count_time").value_or(0), 0.0);
  scan.date = IsoDate(own.Text({"_pd_meas_datetime_initiated"}));
  scan.instrument = own.Text({"_diffrn_measurement_device_type", "_diffrn_measurement_device"});
  const auto hassample = [](const CifBlock& block) { return !SampleOf(block).empty(); };
  if (const CifBlock* block = BlockThatTells(cif, place, hassample)) scan.sample = SampleOf(*block);
  if (const CifBlock* block = BlockThatTells(cif, place, WavelengthsIn))
    TakeWavelengths(*block, scan);
}

const char* OtherKind(const CifBlock& block) {
  for (const auto& [tag, what] : kOtherKinds)
    if (block.Find(tag)) return what;
  return nullptr;
}

// The counts that are preferred among those that have positions.
void AddPattern(const Cif& cif, std::size_t place, ScanList& scans) {
  const CifBlock& block = cif.blocks[place];
  const char* amiss = nullptr;
  bool sound = false;
  for (const char* tag : kCounts) {
    const CifValues* counts = block.Find(tag);
    if (!counts) continue;
    MeasuredScan scan;
    scan.counts = CifNumbersIn(*counts);
    if (std::ranges::none_of(scan.counts, [](double c) { return std::isfinite(c); })) continue;
    if (!TakeColumn(block, kAngles, scan) && !TakeRange(block, scan)) {
      amiss = OtherKind(block);
      sound = amiss != nullptr;
      if (sound) break;
      amiss = "counts without positions that fit them";
      if (!TakeColumn(block, kSpacings, scan)) continue;
    }
    scan.esd = EsdsOf(block, tag, scan, *counts);
    Describe(cif, place, scan);
    return scans.Add(std::move(scan));
  }
  if (amiss) scans.LeaveOut(amiss, sound);
}

// What a file without points holds instead, as the end of a sentence.
const char* WhatElse(const CifBlocks& blocks) {
  constexpr struct {
    const char *tag, *what;
  } kKinds[] = {{"_pd_calc_intensity_total", "it holds a calculated pattern and no measured one"},
                {"_pd_calc_intensity_net", "it holds a calculated pattern and no measured one"},
                {"_atom_site_label",
                 "it holds a crystal structure and no pattern; \"Multiple patterns/Structure "
                 "(CIF)\" shows it"}};
  for (const auto& [tag, what] : kKinds)
    for (const CifBlock& block : blocks)
      if (block.Find(tag)) return what;
  return "it holds no pattern";
}

}  // namespace

MeasuredFile ImportPdCif(const ImportSource& source) {
  constexpr std::size_t kMostCif = std::size_t{32} << 20, kMostBlocks = 5000;
  if (source.bytes.size() > kMostCif) throw NotReadable("it is larger than 32 MiB");
  Cif cif{ParseCif(source.bytes), {}};
  if (cif.blocks.size() > kMostBlocks) throw NotReadable("it holds more than 5000 blocks");
  for (const CifBlock& block : cif.blocks) cif.links.push_back(LinksOf(block));
  ScanList scans;
  for (std::size_t i = 0; i < cif.blocks.size(); ++i) AddPattern(cif, i, scans);
  MeasuredFile file = scans.Done(WhatElse(cif.blocks));
  if (file.scans.size() == 1) file.scans[0].label.clear();
  return file;
}
