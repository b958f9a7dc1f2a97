#include "index/treor/listing.h"

#include <cmath>

void ListAdjusted(Listing& listing) {
  listing.Put<"503(50H THE 7 FIRST LINES ADJUSTED BY THEIR HIGHER ORDERS)">();
}

void ListHigherOrder(Listing& listing, int order, int first, int n) {
  listing.Put<
      "(' LINE NUMBER=',I3,' SHOULD NOT BE INCLUDED IN THE TREOR BASE LINES',/,"
      "' SQ IS',I3,' TIMES SQ OF LINE NUMBER=',I3)">(order, n * n, first);
}

void ListFewTestLines(Listing& listing, int wanted) {
  listing.Put<"69(53H NUMBER OF LINES WITH SQ LESS THAN 0.327 NOT EQUAL TO,I5)">(wanted);
}

void ListControlError(Listing& listing) {
  listing.Put<
      "300(' **ERROR** PROGRAM CONTROL CARD INVALID.',/,"
      "' PROBABLY MISSING COMMA OR DELIMITER KEYWORD',/,"
      "' OR UNIDENTIFIED KEYWORD.')">();
}

void ListOptions(const TreorSearch& search) {
  const TreorOptions& o = search.options;
  Listing& listing = search.listing;
  if (o.dens > 0.00001f)
    listing.Put<
        "50(1X,'MOLAR WEIGHT=',F10.3,' DENSITY=',F10.3,/,"
        "' MAX. DENSITY DEVIATION=',F10.3)">(o.molw, o.dens, o.edens);
  listing.Put<"44(12H STOP LIMITS)">();
  listing.Put<
      "43(' FIGURE OF MERIT REQUIRED=',I5,/,"
      "' MAX NUMBER OF UNINDEXED LINES IN FIGURE OF MERIT TEST=',I5)">(o.merit, o.nix);
  if (o.omit != 0)
    listing.Put<"48(21H ORTHOROMBIC SYMMETRY)">();
  else
    listing.Put<"46(52H CUBIC,TETRAGONAL,HEXAGONAL AND ORTHOROMBIC SYMMETRY)">();
  listing.Put<
      "64(15H MAX CELL EDGE=,F5.1,17H MAX CELL VOLUME=,F10.1,/,"
      "4H D1=,F10.6,7H SSQTL=,F10.6,4H D2=,F10.6,6H WAVE=,F10.6)">(o.cem, o.vol, o.d1, o.ssqtl,
                                                                   o.d2, o.wave);
  listing.Put<"39(22H NUMBER OF TEST LINES=,I5,13H IQ REQUIRED=,I5)">(o.use, o.iq);
  if (o.list != 0) listing.Put<"41(28H PRINT ALL TRIALS WITH IQ GE,I5)">(o.iq);
}

void ListSystem(const TreorSearch& search, CrystalSystem system) {
  Listing& listing = search.listing;
  const float volume = search.limits.stagevol;
  switch (system) {
    case CrystalSystem::Cubic:
      return listing.Put<"350(' ** CUBIC TEST ********************* MAX. VOLUME=',F6.0)">(volume);
    case CrystalSystem::Tetragonal:
      return listing.Put<"351(' ** TETRAGONAL TEST **************** MAX. VOLUME=',F6.0)">(volume);
    case CrystalSystem::Hexagonal:
      return listing.Put<"352(' ** HEXAGONAL TEST ***************** MAX. VOLUME=',F6.0)">(volume);
    case CrystalSystem::Orthorhombic:
      return listing.Put<"353(' ** ORTHORHOMBIC TEST ************** MAX. VOLUME=',F6.0)">(volume);
    case CrystalSystem::Monoclinic:
      listing.Put<"511(' ** MONOCLINIC TEST **************** MAX. VOLUME=',F6.0)">(volume);
      return listing.Put<"512(18H MAX BETA ALLOWED=,I5,5H DEG.)">(search.options.mono);
    case CrystalSystem::Triclinic:
      return;  // its searches have headings of their own
  }
}

void ListStage(const TreorSearch& search, Stage stage) {
  Listing& listing = search.listing;
  if (stage == Stage::Monoclinic020)
    listing.Put<"604(13H (020)-SEARCH)">();
  else if (stage == Stage::TriclinicZone)
    listing.Put<"12(' TRICLINIC DOMINANT ZONE TEST ')">();
  else if (stage == Stage::Triclinic)
    listing.Put<"4075(' ** TRICLINIC TEST ***************** MAX. VOLUME=',F6.0)">(
        search.limits.stagevol);
}

void ListStageEnd(Listing& listing, Stage stage) {
  if (stage == Stage::MonoclinicZone)
    listing.Put<"(' END OF MONOCLINIC DOMINANT ZONE TEST')">();
  else if (stage == Stage::TriclinicZone)
    listing.Put<"173(' END OF TRICLINIC DOMINANT ZONE TEST ')">();
  else if (stage == Stage::Triclinic)
    listing.Put<"163(' END OF TRICLINIC TEST ')">();
}

void ListCounts(const TreorSearch& search) {
  const SearchCounts& n = search.counts;
  search.listing.Put<
      "(/,' NUMBER OF CELLS WITH ',I3,' OR MORE LINES INDEXED',/,"
      "'   (020)-SEARCH',I18,/,'   DOMINANT ZONE TEST',I12,/,"
      "'   GENERAL MONOCLINIC TEST',I7,/,'   TRICLINIC TESTS',I15)">(
      search.options.iq, n.zone020, n.dominantzone, n.general, n.triclinic);
}

void ListTrial020(Listing& listing, int count, const std::array<float, 4>& baselines) {
  const auto [x, y, z, u] = baselines;
  listing.Put<"1029(20H MONOCLINIC (-20) K=,I3,6H XYZU=,4F10.6)">(count, x, y, z, u);
}

void ListZoneTrial(Listing& listing, int count, const std::array<float, 4>& baselines) {
  const auto [x, y, z, u] = baselines;
  listing.Put<"320(' DOMINANT ZONE TEST. K=',I3,' XYZU=',4F10.6)">(count, x, y, z, u);
}

void ListNoZoneIndex(Listing& listing) {
  listing.Put<"(' MONOCLINIC DOMINANT ZONE TEST   INDEX RETURNED AS ZERO.')">();
}

void ListFirstBaseLines(Listing& listing, int select) {
  if (select > 5)
    listing.Put<"514(22H SELECTED BASE LINES (,I2,9H,1,2,3) (,I2,9H,1,2,4) (,I2,7H,1,3,4))">(
        select, select, select);
  else
    listing.Put<"406(50H SELECTED BASE LINES (1,2,3,4) (1,2,3,5) (1,2,4,5) )">();
}

void ListBaseLines(Listing& listing, const std::array<int, 4>& baselines) {
  const auto [i, j, k, l] = baselines;
  listing.Put<"34(21H SELECTED BASE LINES=,4I3)">(i, j, k, l);
}

void ListVolumeLimit(Listing& listing, Stage stage, float volume) {
  if (stage == Stage::TriclinicZone || stage == Stage::Triclinic)
    listing.Put<"555(' NEW TRICLINIC VOLUME LIMIT=',F7.0,' A**3')">(volume);
  else
    listing.Put<"555(' NEW MONOCLINIC VOLUME LIMIT=',F7.0,' A**3')">(volume);
}

void ListAnyTrial(Listing& listing, const TreorCandidate& candidate) {
  const Constants& c = candidate.constants;
  listing.Put<"(I5,6F10.6)">(candidate.count, c.a, c.b, c.c, c.d, c.e, c.f);
}

void ListUnrefined(Listing& listing, const CellAndVolume& found) {
  const UnitCell& cell = found.cell;
  listing.Put<"1307(' NOT REFINED UNIT CELL ')">();
  listing.Put<
      "1308('  A=',F7.3,'  B=',F7.3,'  C=',F7.3,/,"
      "' AL=',F7.3,' BE=',F7.3,' GA=',F7.3,'  CELL VOLUME=',F7.2,' A**3')">(
      cell(1), cell(2), cell(3), cell(4), cell(5), cell(6), found.volume);
}

void ListCycle(Listing& listing, std::span<const float> parameters) {
  listing.Put<"8(//,14H CYCLE RESULTS,//)">();
  std::string line;
  for (const float p : parameters) line += WriteRecord<"(F10.6)">(p);
  listing.Lines(line);
}

void ListFewEquations(Listing& listing) {
  listing.Put<
      "702(' NUMBER OF EQ LESS THAN NUMBER OF PARAMETERS ',/,       "
      "' MAY INDICATE A HIGHER SYMMETRY ',/,       "
      "' TWO ALMOST IDENTICAL PARAMETERS ? ',/)">();
}

void ListHigherSymmetry(Listing& listing, CrystalSystem system) {
  if (system == CrystalSystem::Cubic)
    listing.Put<"1005(23H TEST OF CUBIC SYMMETRY)">();
  else if (system == CrystalSystem::Tetragonal)
    listing.Put<"1006(28H TEST OF TETRAGONAL SYMMETRY)">();
  else
    listing.Put<"1015(27H TEST OF HEXAGONAL SYMMETRY)">();
}

void ListCell(Listing& listing, const TreorSolution& solution, int singles, int lines) {
  const UnitCell &cell = solution.cell, &esd = solution.esd;
  listing.Put<
      "650(1X,'  NUMBER OF SINGLE INDEXED LINES =',I5,/,1X, '  TOTAL NUMBER OF LINES =',"
      "I5,/,1X,                    '  A =',2F10.6,' A   ALFA =',2F10.6,' DEG',/,1X,"
      "        '  B =',2F10.6,' A   BETA =',2F10.6,' DEG',/,1X,"
      "        '  C =',2F10.6,' A  GAMMA =',2F10.6,' DEG',/,1X,"
      "        '  UNIT CELL VOLUME =',F10.2,' A**3')">(
      singles, lines, cell(1), esd(1), cell(4), esd(4), cell(2), esd(2), cell(5), esd(5), cell(3),
      esd(3), cell(6), esd(6), solution.volume);
}

namespace {

float SpacingOf(float s, float wave) { return wave / (2.0f * std::sqrt(s)); }

void ListRow(Listing& listing, const LineRow& row, float wave) {
  const auto& observed = row.observed;
  const auto& calculated = row.calculated;
  if (!calculated)
    return listing.Put<"20(1H ,12X,F9.6,19X,F8.3,8X,F8.4,2X,6X,A4)">(
        observed->s, TwoThetaAt(observed->s), SpacingOf(observed->s, wave), observed->label);
  const auto [h, k, l] = calculated->hkl;
  if (!observed)
    return listing.Put<"16(1H ,3I4,9X,F9.6,18X,F8.3)">(h, k, l, calculated->s,
                                                       TwoThetaAt(calculated->s));
  listing.Put<"14(1H ,3I4,2F9.6,F10.6,2F8.3,F8.4,2X,6X,A4)">(
      h, k, l, observed->s, calculated->s, observed->s - calculated->s, TwoThetaAt(observed->s),
      TwoThetaAt(calculated->s), SpacingOf(observed->s, wave), observed->label);
}

}  // namespace

void ListLines(Listing& listing, const LineTest& test, float wave) {
  listing.Put<
      "4(1H ,'   H   K   L SST-OBS  SST-CALC   DELTA   2TH-OBS 2TH-CALC D-OBS   "
      "FREE PARAM.')">();
  for (const LineRow& row : test.rows) ListRow(listing, row, wave);
  listing.Put<"22(1H ,'NUMBER OF OBS. LINES =',I5)">(test.observed);
  listing.Put<"23(1H ,'NUMBER OF CALC. LINES =',I5)">(test.calculated);
  for (const FigureOfMerit& f : test.figures)
    listing.Put<
        "91(1H ,'M(',I3,')=',I4,'  AV.EPS.=',F10.7,/,"
        "1H ,'F',I3,' =',F5.0,'(',F8.6,',',I5,')')">(
        f.lines, f.m, f.epsilon, f.lines, static_cast<float>(f.f), f.delta, f.calculated);
  listing.Put<"100(' M(N) = SQ(N)/(2*AV.EPS.*NCALC),  F(N) = N/(AV.DELTA 2TH*NCALC)')">();
}

void ListTest(Listing& listing, const LineTest& test) {
  listing.Put<"116(1H ,I5,'  LINES ARE UNINDEXED ')">(test.unindexed);
  listing.Put<"147(' M-TEST=',I5,' UNINDEXED IN THE TEST=',I5,//)">(test.m, test.unindexedintest);
}

void ListGoodLuck(Listing& listing) {
  listing.Put<
      "1052(' THIS MAY BE THE SOLUTION !!! ',/,       "
      "' THE REFINEMENT OF THE CELL WILL NOW BE REPEATED ',/,       "
      "' THREE CYCLES MORE. --- GOOD LUCK !')">();
}

namespace {

void ListDeletedLines(Listing& listing, int deleted) {
  if (deleted == 1)
    listing.Put<"2778(' DO NOT FORGET TO ADD THE DELETED LINE IN THE FINAL',' REFINEMNETS',/)">();
  else if (deleted > 1)
    listing.Put<
        "2777(' DO NOT FORGET TO ADD THE ',I2,' DELETED LINES IN THE',/, "
        "' FINAL REFINEMENTS.',/)">(deleted);
}

void ListCheck(Listing& listing, CrystalSystem system) {
  if (system == CrystalSystem::Cubic)
    listing.Put<"8204(/,' SET KS=0 TO CHECK THE SOLUTION..... ')">();
  else if (system == CrystalSystem::Tetragonal || system == CrystalSystem::Hexagonal)
    listing.Put<"8205(/,' SET KS=0 AND THS=0 TO CHECK THE SOLUTION.... ')">();
  else
    return;
  listing.Put<"8208(' AND RUN TREOR ONCE MORE. ')">();
}

}  // namespace

void ListSolved(const TreorSearch& search, CrystalSystem system) {
  Listing& listing = search.listing;
  listing.Put<
      "1103(/,' ANY COMMON FACTOR IN THE QUADRATIC FORMS ? ?',/,"
      "' CHECK CONVERGENCE IN THE REFINEMENT',/,"
      "' (EV. USE PROGRAM FGNDK OR PURUM)',/,"
      "' END OF INDEXING CALCULATIONS',//)">();
  ListDeletedLines(listing, static_cast<int>(search.all.size() - search.lines.size()));
  ListCheck(listing, system);
}

void ListAdvice(Listing& listing, const LineTest& test) {
  if (test.unindexedintest > 0)
    listing.Put<"(/,' AS A TEST YOU MAY DECREASE THE PARAMETER NIX ')">();
  else
    listing.Put<
        "8212(/,' IF YOU WANT TO LOOK FOR A BETTER SOLUTION YOU ',/,   "
        "' MAY TRY TO INCREASE THE PARAMETER MERIT ABOVE ',I5,"
        "/, '....OR PERHAPS THIS WAS THE BEST SOLUTION...' )">(test.m);
}

void ListStopped(Listing& listing) {
  listing.Put<"(/,' THE RUN HAS BEEN STOPPED: WHAT IS ABOVE IS NOT ALL')">();
}
