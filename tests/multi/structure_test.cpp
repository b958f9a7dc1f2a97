// Structures compared with the pattern: what a CIF tells, the reflections of the structure, its
// powder lines, and the commands that show them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "../../tools/examplelines.h"  // computed with another sum over all atoms of the cell
#include "crystal/laue.h"
#include "modify/patterns.h"
#include "multi/structure.h"
#include "plot/plot.h"
#include "plot/structureticks.h"
#include "shell/shell.h"
#include "toolkit/common.h"  // for PaperList
#include "toolkit/displaylist.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/text.h"

#ifdef QUILLAGRAM_GEMMI

namespace {

constexpr double kWave = 1.54056;

std::string PathOf(const std::string& name) {
  return QUILLAGRAM_SOURCE "/tools/structures/" + name + ".cif";
}

// A cell with lines for symmetry and atoms.
std::string Cif(const std::string& cell, const std::string& symmetry, const std::string& atoms) {
  static constexpr const char* kConstants[] = {"length_a",    "length_b",   "length_c",
                                               "angle_alpha", "angle_beta", "angle_gamma"};
  std::string text = "data_x\n";
  std::size_t at = 0;
  for (const char* constant : kConstants) {
    const std::size_t end = std::min(cell.find(' ', at), cell.size());
    text += std::string("_cell_") + constant + " " + cell.substr(at, end - at) + "\n";
    at = std::min(end + 1, cell.size());
  }
  return text + symmetry + "\nloop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n" +
         "_atom_site_fract_z\n" + atoms + "\n";
}

const std::string kCube = "4 4 4 90 90 90", kAtom = "Si1 0.1 0.2 0.3";

CrystalStructure Read(const std::string& text) { return ReadStructure(text, "/here/file.v2.cif"); }

std::string Name(const std::string& group) {
  return "_symmetry_space_group_name_H-M '" + group + "'";
}

std::string Operators(const std::vector<std::string>& triplets) {
  std::string text = "loop_\n_symmetry_equiv_pos_as_xyz";
  for (const std::string& triplet : triplets) text += "\n'" + triplet + "'";
  return text;
}

// |F|^2 of a reflection, 0 for one that is not in the list.
double Square(const CrystalStructure& structure, const Hkl& hkl) {
  for (const auto& row : structure.reflections(kWave, 0.9, 20).rows)
    if (PackHkl(row.hkl) == PackHkl(hkl)) return row.square;
  return 0;
}

}  // namespace

// With the radiation of the examples: cobalt and a synchrotron beside copper.
TEST(StructureReflections, AreThoseOfTheExamples) {
  for (const auto& [name, source, cell, group, lines] : kStructures) {
    const std::string text = name;
    const double wavelength = text == "rutile" ? 1.78897 : text == "silicon" ? 0.4 : CuKalpha1;
    auto found = ReadStructure(ReadFile(PathOf(name)), "")
                     .reflections(wavelength, lines.back().d * 0.99999, 100)
                     .rows;
    const double strongest = std::ranges::max_element(lines, {}, &Line::square)->square;
    std::erase_if(found, [=](const auto& row) { return row.square < 1e-6 * strongest; });
    ASSERT_EQ(found.size(), lines.size()) << name;
    for (const Line& line : lines) {
      const int code = PackHkl({line.h, line.k, line.l});
      const auto row =
          std::ranges::find_if(found, [=](const auto& r) { return PackHkl(r.hkl) == code; });
      ASSERT_NE(row, found.end()) << name << line.h << line.k << line.l;
      EXPECT_EQ(row->multiplicity, line.multiplicity);
      EXPECT_NEAR(row->d, line.d, 1e-5);
      EXPECT_NEAR(row->square, line.square, 1e-4 * line.square + 0.01);
    }
  }
}

// The group's table, its classes by number, and the centering.
TEST(StructureSymmetry, ClassAndCenteringAreThoseOfTheFit) {
  const struct {
    const char *group, *cell;
    int laueclass;
    char centering;
  } kCases[] = {
      {"P 1", "4 5 6 80 95 100", 1, 'P'},      {"P 2/m 1 1", "4 5 6 80 90 90", 2, 'P'},
      {"I 1 2/a 1", "4 5 6 90 95 90", 3, 'I'}, {"P 1 1 21/m", "4 5 6 90 90 100", 4, 'P'},
      {"A b a 2", "4 5 6 90 90 90", 5, 'A'},   {"R -3:H", "4 4 6 90 90 120", 6, 'R'},
      {"R -3:R", "4 4 4 80 80 80", 7, 'P'},    {"P -3 m 1", "4 4 6 90 90 120", 8, 'P'},
      {"P 3 1 2", "4 4 6 90 90 120", 9, 'P'},  {"R 3 m:R", "4 4 4 80 80 80", 10, 'P'},
      {"I 41/a", "4 4 6 90 90 90", 11, 'I'},   {"P -4 2 m", "4 4 6 90 90 90", 12, 'P'},
      {"P 63", "4 4 6 90 90 120", 13, 'P'},    {"P 63/m m c", "4 4 6 90 90 120", 14, 'P'},
      {"P a -3", "4 4 4 90 90 90", 15, 'P'},   {"F d -3 m Z", "4 4 4 90 90 90", 16, 'F'},
  };
  for (const auto& row : kCases) {
    const CrystalStructure structure = Read(Cif(row.cell, Name(row.group), kAtom));
    EXPECT_EQ(structure.laueclass, row.laueclass) << row.group;
    EXPECT_EQ(CenteringOf(structure.centering).label[0], row.centering) << row.group;
  }
}

// Diamond with its origin at the atom or at the center between two, by all that a file can tell;
// the operators count where a name says otherwise.
TEST(StructureSymmetry, OperatorsComeFirst) {
  const std::string origin1 = "Si 0 0 0", origin2 = "Si 0.125 0.125 0.125";
  std::vector<std::string> generators = {
      "x,y,z",   "0.5+x,y+.5,z",        "x,1/2+Y,1/2+Z", "z,x,y", "1/4-y,x+.25,Z + 0.25",
      "x,-y,-z", "-x+1/4,-y+1/4,-z+1/4"};
  const std::string listed = Operators(generators);
  generators[4] = "-y,x+1/4,z+1/4", generators[5] = "x,1/4-y,1/4-z", generators[6] = "-x,-y,-z";
  const std::string lying = Operators(generators) + "\n" + Name("P 1");
  const std::string dotted = "_space_group.IT_number 227";
  const std::pair<std::string, std::string> kCases[] = {
      {Name("F d -3 m:1"), origin1},
      {Name("Fd-3m S"), origin1},
      {Name("F d -3 m Z"), origin2},
      {"_space_group_name_Hall '-F 4vw 2vw 3'", origin2},
      {"_space_group_IT_number 227", origin2},
      {dotted, origin2},
      {listed, origin1},
      {lying, origin2},
  };
  for (const auto& [symmetry, atom] : kCases) {
    const CrystalStructure structure = Read(Cif("5.431 5.431 5.431 90 90 90", symmetry, atom));
    const double first = Square(structure, {1, 1, 1});
    EXPECT_EQ(structure.group, atom == origin1 ? "F d -3 m:1" : "F d -3 m:2") << symmetry;
    // Waves of eight atoms: 32 f^2, 64 f^2 and nothing, and f(220) = 0.82 f(111).
    EXPECT_NEAR(first, 32 * 10.53 * 10.53, 0.03 * first) << symmetry;
    EXPECT_NEAR(Square(structure, {2, 2, 0}) / first, 2 * 0.82 * 0.82, 0.03) << symmetry;
    EXPECT_LT(Square(structure, {2, 2, 2}), 1e-6 * first) << symmetry;
    EXPECT_EQ(structure.laueclass, 16);
  }
}

// At (sin(theta) / lambda)^2 = 1 / (4 a^2) of 100, by B = 8 pi^2 U; a tensor counts first.
TEST(StructureReflections, DisplacementFactors) {
  const auto square = [](const std::string& tags, const std::string& values,
                         const std::string& more = "") {
    const std::string text =
        "data_x\n_cell_length_a 3\n_cell_length_b 3\n_cell_length_c 3\n" + Name("P 1") +
        "\nloop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
        "_atom_site_fract_y\n_atom_site_fract_z\n" +
        tags + "Cu1 Cu2+ 0 0 0 " + values + "\n" + more;
    return Square(Read(text), {1, 0, 0});
  };
  const std::string b = "_atom_site_B_iso_or_equiv\n", u = "_atom_site_U_iso_or_equiv\n";
  const double one = square(b, "1"), s = 1.0 / 36, u1 = 1 / (8 * M_PI * M_PI);
  const auto expect = [&](double value, double factor) {
    EXPECT_NEAR(value / one, std::exp(-2 * (factor - 1) * s), 1e-5);
  };
  expect(square(b, "3.0(2)"), 3);
  expect(square(u, std::to_string(2 * u1)), 2);
  expect(square(u + b, "? 2"), 2);
  expect(square("", ""), 0.5);
  expect(square(b, "0"), 0.5);
  const std::string tensor =
      "loop_\n_atom_site_aniso_label\n_atom_site_aniso_L_11\n_atom_site_aniso_L_22\n"
      "_atom_site_aniso_L_33\n_atom_site_aniso_L_12\n_atom_site_aniso_L_13\n"
      "_atom_site_aniso_L_23\nCu1 4 1 1 0 0 0\n";
  for (const char letter : {'B', 'U'}) {
    std::string named = tensor;
    for (char& c : named) c = c == 'L' ? letter : c;
    expect(square(b, "1", named), letter == 'B' ? 4 : 4 / u1);
  }
  // A share of an atom counts as such, also where symmetry makes more of it.
  EXPECT_NEAR(square(b + "_atom_site_occupancy\n", "1 0.5") / one, 0.25, 1e-9);
}

TEST(StructureFile, IsRefusedWithAReason) {
  const std::string deep(70, 'x');
  const std::pair<std::string, std::string> kCases[] = {
      {"no cif", "line 1 is no CIF"},
      {"data_x\n_cell_length_a 4\n", "it holds no atoms with fractional coordinates"},
      {Cif("0 4 4 90 90 90", Name("P 1"), kAtom), "it tells no cell for its atoms"},
      {Cif("4 4 4 20 90 120", Name("P 1"), kAtom), "its cell has no volume"},
      {Cif("4 4 4 90 180 90", Name("P 1"), kAtom), "the angles of its cell are none"},
      {Cif(kCube, "", kAtom), "it tells neither symmetry operators nor a space group"},
      {Cif(kCube, Name("P 7 3"), kAtom),
       "it lists no symmetry operators, and its space group \"P 7 3\" is not known"},
      {Cif("4 5 4 90 90 90", Name("P 4"), kAtom),
       "its cell does not have the symmetry of its space group"},
      {Cif(kCube, Operators({"x,y,q"}), kAtom), "\"x,y,q\" is no symmetry operator"},
      {Cif(kCube, Operators({"x,y"}), kAtom), "\"x,y\" is no symmetry operator"},
      {Cif(kCube, Operators({"x+0.13,y,z"}), kAtom), "\"x+0.13,y,z\" is no symmetry operator"},
      {Cif(kCube, Operators({deep + ",y,z"}), kAtom), "\"" + deep.substr(0, 60)},
      {Cif(kCube, Operators({"x+y,y,z"}), kAtom), "its symmetry operators form no space group"},
      {Cif(kCube, Operators({"x,x,z"}), kAtom), "its symmetry operators form no space group"},
      {Cif(kCube, Name("P 1"), "Qq1 0 0 0"), "its atom \"Qq1\" is of no known element"},
  };
  for (const auto& [text, reason] : kCases) try {
      Read(text);
      ADD_FAILURE() << reason;
    } catch (const std::exception& failure) {
      EXPECT_TRUE(std::string(failure.what()).starts_with(reason)) << failure.what();
    }
}

// A later block, marks of the byte order, names, atoms that are none.
TEST(StructureFile, TakesWhatProgramsWrite) {
  const std::string block = Cif(kCube, Name("P 1"), "Ow1 0 0 0\nH1 ? ? ?\nFe .5 .5 .5");
  const auto name = [&](const std::string& line) {
    return Read(
               "\xEF\xBB\xBF"
               "data_p\n_pd_meas_counts_total 7\n" +
               block + line)
        .name;
  };
  EXPECT_EQ(name(""), "file");
  EXPECT_EQ(name("_chemical_name_mineral 'Iron water'\n"), "Iron water");
  EXPECT_EQ(name("_pd_phase_name 'from C:/data/x.EXP'\n"), "file");
  const CrystalStructure structure = Read(block + "_chemical_formula_sum 'Fe H2 O'\n");
  EXPECT_EQ(structure.formula, "FeH2O");
  // Oxygen and iron, in phase and out of it.
  EXPECT_GT(Square(structure, {1, 1, 0}), 2 * Square(structure, {1, 0, 0}));
}

// By hand: LP = (1 + cos^2 2theta) / 2 / (sin(theta) sin(2theta)).
TEST(PowderLines, AddUpWhatLiesAtOneSpacing) {
  const double d = kWave / 2 / std::sin(Degrees(15)), far = kWave / 2 / std::sin(Degrees(30));
  const std::vector<StructureReflection> rows = {
      {{3, 3, 3}, 8, far, 10}, {{2, 0, 0}, 6, d, 30},   {{5, 1, 1}, 24, far * (1 + 1e-7), 10},
      {{9, 0, 0}, 1, far, 10}, {{9, 9, 9}, 1, 0.5, 99}, {{1, 0, 0}, 2, 2 * d, 0},
  };
  const auto lines = PowderLines(rows, kWave, 9);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_NEAR(lines[0].tth, 30, 1e-4);
  EXPECT_NEAR(lines[1].tth, 60, 1e-4);
  EXPECT_EQ(PackHkl(lines[1].hkl), PackHkl({5, 1, 1}));
  const double first = 180 * (1 + 0.75) / 2 / (std::sin(Degrees(15)) * 0.5);
  const double second = 330 * (1 + 0.25) / 2 / (0.5 * std::sin(Degrees(60)));
  EXPECT_NEAR(lines[0].intensity, 100, 1e-4);
  EXPECT_NEAR(lines[1].intensity, 100 * second / first, 1e-3);
  EXPECT_EQ(PowderLines(rows, kWave, 1).size(), 1u);
}

// ---- Commands ----

namespace {

class Structures : public testing::Test {
 protected:
  Structures() {
    PutPattern(10, 0.1f, 801, [](double x) { return x < 50 ? 100 : 1100; });
    ComputeXAxes();
    SetMenuLoaded(1);
  }
  void Open(const std::vector<std::string>& names) {
    std::string answer = "file";
    for (const std::string& name : names) answer += " \"" + PathOf(name) + "\"";
    RunMenu(MenuOpenStructures, answer);
  }
  // Strokes of a structure's colour, from the lowest to the highest point; names aside.
  std::vector<std::pair<float, float>> Ticks(int k) {
    std::vector<std::pair<float, float>> ticks;
    for (const Stroke& stroke : ScreenList().strokes) {
      const DrawPoint* points = &ScreenList().points[stroke.first];
      if (stroke.pen.width == 2 && static_cast<int>(stroke.pen.colour) == StructureColour(k))
        for (std::size_t i = 0; i + 1 < stroke.count; i += 2)
          ticks.push_back({points[i].x, points[i + 1].y - points[i].y}), floor_ = points[i].y;
    }
    return ticks;
  }
  float floor_ = 0;  // of the ticks looked at last
};

}  // namespace

// As reference cards have them, within what displacement factors do.
TEST_F(Structures, StrongestLinesOfStandards) {
  const struct {
    const char* name;
    Hkl hkl[3];
    float intensity[3];
  } kCases[] = {
      {"silicon", {{1, 1, 1}, {2, 2, 0}, {3, 1, 1}}, {100, 65, 38}},
      {"quartz", {{1, 0, 1}, {1, 0, 0}, {1, 1, 2}}, {100, 20, 13}},
      {"rutile", {{1, 1, 0}, {2, 1, 1}, {1, 0, 1}}, {100, 55, 45}},
      {"ceria", {{1, 1, 1}, {2, 2, 0}, {3, 1, 1}}, {100, 53, 41}},
      {"calcite", {{1, 0, 4}, {1, 1, 6}, {0, 1, 8}}, {100, 21, 20}},
  };
  int k = 0;
  for (const auto& row : kCases) {
    Open({row.name});
    ++k;
    std::vector<int> order(ws.nstructureline(k));
    std::iota(order.begin(), order.end(), 1);
    std::ranges::sort(order,
                      [=](int i, int j) { return ws.structureint(k, i) > ws.structureint(k, j); });
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(ws.structurehkl(k, order[i]), PackHkl(row.hkl[i])) << row.name << i;
      EXPECT_NEAR(ws.structureint(k, order[i]), row.intensity[i], 2) << row.name << i;
    }
  }
  EXPECT_EQ(WStatusText(3),
            "calcite CCaO3 (R -3 c:H): 104 at 29.40 (100), 116 at 48.50 (21), 018 at 47.50 (20)");
}

TEST_F(Structures, ComeAndGo) {
  Open({"silicon", "ceria", "rutile"});
  EXPECT_EQ(WMenuGetString(MenuCloseStructure1 + 1), "2 ceria");
  const auto ceria = ws.structuretth.row(2)[0];
  RunMenu(MenuCloseStructure1);
  EXPECT_EQ(ws.nstructure, 2);
  EXPECT_EQ(ws.structurename(1), "ceria");
  EXPECT_EQ(ws.structuretth(1, 1), ceria);
  EXPECT_GT(ws.nstructureline(2), 0);
  EXPECT_EQ(ws.nstructureline(3), 0);
  EXPECT_FALSE(WMenuGetState(MenuUseCell1 + 2, MenuEnabled));
  RunMenu(MenuUndo);
  EXPECT_EQ(ws.structurename(1) + ws.structurename(3), "siliconrutile");

  RunMenu(MenuCloseStructure1 + 2);
  EXPECT_EQ(ws.nstructure, 2);
  RunMenu(MenuUndo);

  RunMenu(MenuUseCell1 + 2);
  EXPECT_FLOAT_EQ(ws.cell(3), 2.9587f);
  EXPECT_EQ(ws.laueclass, 12);
  EXPECT_EQ(ws.centering, 1);
  EXPECT_EQ(WStatusText(3), "Cell of rutile (P 42/m n m) goes to Peak fit: 4/mmm, P");

  Open({"quartz", "halite", "calcite", "gypsum", "albite", "corundum"});
  EXPECT_EQ(ws.nstructure, MaxStructures);
  EXPECT_TRUE(WStatusText(3).ends_with("; 5 of 6 files opened: there is room for eight"));
  Events();
  Open({"corundum"});
  EXPECT_EQ(Events()[1], "box\tError\tEight structures are open: close one first");
  RunMenu(MenuCloseStructures);
  EXPECT_EQ(ws.nstructure, 0);
  EXPECT_FALSE(WMenuGetState(MenuCloseStructures, MenuEnabled));
  RunMenu(MenuOpenStructures, "file /nowhere/x.cif");
  EXPECT_EQ(ws.nstructure, 0);
}

// Bragg's law at another wavelength; the range is that of the pattern, whichever it is.
TEST_F(Structures, FollowThePattern) {
  TempDir dir;
  Open({"silicon"});
  EXPECT_NEAR(ws.structuretth(1, 1), 28.44, 0.01);
  EXPECT_EQ(ws.nstructureline(1), 6);  // 111, 220, 311, 400, 331, 422: up to 90 degrees
  std::string text;
  for (int i = 0; i <= 400; ++i) text += Fixed(20 + 0.1 * i, 1) + " " + std::to_string(i) + "\n";
  WriteFile(dir.file("next.xy"), text);
  RunMenu(MenuOpenAny, "file \"" + dir.file("next.xy") + "\"");
  EXPECT_EQ(ws.structurename(1), "silicon");
  EXPECT_EQ(ws.nstructureline(1), 3);
  ws.wavelen(1) = 1.0f;
  RunMenu(MenuFullPattern);
  EXPECT_NEAR(ws.structuretth(1, 1), 2 * std::asin(0.5 / 1.92011) * 180 / M_PI, 1e-3);
}

// A row of its own for each below the frame, as long as the square root of the intensity; or over
// the pattern up to its highest point.
TEST_F(Structures, AreDrawnAsTicksOrToScale) {
  RunMenu(MenuFullPattern);
  const float height = ws.plotheight, floor = ws.ploty0;
  Open({"silicon", "rutile"});
  EXPECT_EQ(ws.plotheight + 84, height);
  EXPECT_EQ(ws.ploty0 - 84, floor);
  const auto rows = Ticks(1);
  ASSERT_EQ(rows.size(), 6u);
  EXPECT_NEAR(rows[0].first - ws.plotx0, (ws.structuretth(1, 1) - ws.viewxmin) / ws.xperunit, 0.01);
  EXPECT_NEAR((rows[1].second - 3) / (rows[0].second - 3), std::sqrt(0.65), 0.01);
  EXPECT_FLOAT_EQ(floor_, ws.ploty0 - 20 - 37);
  EXPECT_GT(Ticks(2).size(), 10u);
  EXPECT_FLOAT_EQ(floor_, ws.ploty0 - 20 - 79);
  RunMenu(MenuAxisD);
  ASSERT_EQ(Ticks(1).size(), 6u);
  EXPECT_NEAR(Ticks(1)[0].first - ws.plotx0, (3.13553f - ws.viewxmin) / ws.xperunit, 0.01);
  RunMenu(MenuAxisTth);

  RunMenu(MenuScaleStructures);
  EXPECT_TRUE(WMenuGetState(MenuScaleStructures, MenuChecked));
  EXPECT_EQ(ws.plotheight, height);
  const auto sticks = Ticks(1);
  ASSERT_EQ(sticks.size(), 6u);
  EXPECT_NEAR(sticks[0].second, (1100 - ws.viewymin) / ws.yperunit, 0.1);
  EXPECT_NEAR(sticks[1].second, (100 + 650 - ws.viewymin) / ws.yperunit, 5);
  RunMenu(MenuUndo);
  EXPECT_EQ(Ticks(1), rows);
}

// The form about the measurement stands where it has always stood, below the rows.
TEST_F(Structures, LeaveThePrintedFormInItsPlace) {
  const auto page = [] {
    ws.printflag = 1;
    IGrInit("H");
    IGrArea(0, 0, 1, 1);
    IGrUnits(0, 0, 180, 254);
    LayView();
    DrawView();
    ws.printflag = 0;
    DrawRect box{1e9f, 1e9f, -1e9f, -1e9f};
    for (const DrawPoint& p : PaperList().points)
      box = {std::min(box.x1, p.x), std::min(box.y1, p.y), std::max(box.x2, p.x),
             std::max(box.y2, p.y)};
    return box;
  };
  ws.sampleid = "corundum";
  const DrawRect before = page();
  IGrInit("");
  Open({"corundum", "calcite"});
  const DrawRect after = page();
  IGrInit("");
  for (const auto side : {&DrawRect::x1, &DrawRect::y1, &DrawRect::x2, &DrawRect::y2})
    EXPECT_NEAR(after.*side, before.*side, 1e-3);
}

// A cell that has more reflections than can be worked out has them up to where it is said.
TEST_F(Structures, TooManyReflectionsEndEarlier) {
  TempDir dir;
  std::string atoms;
  const auto spread = [](double x) { return Fixed(x - std::floor(x), 4) + " "; };
  for (int i = 0; i < 400; ++i)
    atoms += "C" + std::to_string(i) + " " + spread(0.755 * i) + spread(0.57 * i * i) +
             spread(0.382 * i) + "\n";
  WriteFile(dir.file("big.cif"), Cif("40 41 42 90 90 90", Name("P 1"), atoms));
  RunMenu(MenuOpenStructures, "file \"" + dir.file("big.cif") + "\"");
  const std::string text = WStatusText(3), told = "no lines worked out beyond ";
  const std::size_t at = text.find(told);
  ASSERT_NE(at, text.npos) << text;
  const double end = std::stod(text.substr(at + told.size()));
  EXPECT_NEAR(end, ws.structuretth(1, ws.nstructureline(1)), 0.2);
  EXPECT_EQ(ws.nstructureline(1), MaxStructureLines);
}

#endif
