// The recipes of examples/, held against series of which all is known.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numbers>

#include "series/seriestable.h"
#include "support/support.h"

namespace {

// Rows of a table by the names of their columns.
struct Row {
  const SeriesTable& table;
  std::size_t number;
  const std::string& Text(const char* column) const {
    return table.rows[number].at(table.ColumnOf(column));
  }
  double operator[](const char* column) const { return std::stod(Text(column)); }
};

// What a recipe makes of a simulated series, or of a file of examples/.
class Recipes : public testing::Test {
 protected:
  void Run(const std::string& recipe, const std::string& words) {
    const std::string command = "cd '" + folder.path() + "' && " + QUILLAGRAM_SERIES " " +
                                QUILLAGRAM_SOURCE "/examples/recipes/" + recipe + " " + words +
                                " --table table 2>told";
    ASSERT_EQ(std::system(command.c_str()), 0) << ReadFile(folder.file("told"));
    table = ReadSeriesTable(folder.file("table"));
    for (std::size_t k = 0; k < table.rows.size(); ++k)
      EXPECT_EQ((Row{table, k}.Text("failed")), "") << k;
  }
  void RunOnSeries(const std::string& recipe, const std::string& kind, int count,
                   const std::string& options = "") {
    const std::string simulate = "cd '" + folder.path() + "' && " + QUILLAGRAM_SIMULATE " " + kind +
                                 " run " + std::to_string(count);
    ASSERT_EQ(std::system(simulate.c_str()), 0);
    Run(recipe, "--list run/" + kind + ".csv " + options);
    ASSERT_EQ(table.rows.size(), static_cast<std::size_t>(count));
  }

  TempDir folder;
  SeriesTable table;
};

// A pattern each 40 kelvin: the change lies between two of them.
constexpr int kFrames = 21;

TEST_F(Recipes, CellAgainstTemperature) {
  RunOnSeries("cell-temperature.recipe", "heating", kFrames, "--chain");
  for (std::size_t k = 0; k < table.rows.size(); ++k) {
    const Row row{table, k};
    const bool tetragonal = row["true_hot_share"] == 1;
    EXPECT_NEAR(row["a"], row["true_a"], tetragonal ? 0.0015 : 0.0004) << k;
    EXPECT_NEAR(row["b"], row["true_b"], tetragonal ? 0.0015 : 0.0004) << k;
    EXPECT_NEAR(row["a"] + row["b"], row["true_a"] + row["true_b"], 0.0006) << k;
    EXPECT_NEAR(row["c"], row["true_c"], 0.0003) << k;
    EXPECT_NEAR(row["zero"], row["true_zero"], 0.003) << k;
    EXPECT_NEAR(std::sqrt(row["W"] + row["U"] * 0.1325), row["true_fwhm"], 0.003) << k;
  }
}

TEST_F(Recipes, TheHotPhaseTakesOverWhereEdgesCannotBeToldApart) {
  RunOnSeries("cell-temperature.recipe", "heating", kFrames,
              "--chain --restart-when 'correlation>0.92' --restart-with " QUILLAGRAM_SOURCE
              "/examples/recipes/cell-temperature-hot.recipe");
  for (std::size_t k = 0; k < table.rows.size(); ++k) {
    const Row row{table, k};
    EXPECT_EQ(row.Text("recipe").starts_with("cell-temperature-hot#"), row["true_hot_share"] == 1);
    EXPECT_NEAR(row["a"], row["true_a"], 0.0004) << k;
    EXPECT_NEAR(row["b"], row["true_b"], 0.0004) << k;
  }
}

TEST_F(Recipes, OneLineThatMoves) {
  RunOnSeries("peak-area.recipe", "heating", kFrames);
  for (std::size_t k = 0; k < table.rows.size(); ++k) {
    const Row row{table, k};
    EXPECT_EQ(row["lines"], 1);
    EXPECT_EQ(row["not fitted"], 0);
    EXPECT_NEAR(row["two-theta"], row["true_110"], 4 * row["two-theta esd"]) << k;
    EXPECT_LT(row["two-theta esd"], 0.002);
    EXPECT_NEAR(row["area"], row["true_110_area"], 4 * row["area esd"]) << k;
    EXPECT_LT(row["area esd"], 20);
  }
}

TEST_F(Recipes, AHumpThatGoesAndLinesThatCome) {
  RunOnSeries("amorphous-hump.recipe", "crystallising", kFrames);
  for (std::size_t k = 0; k < table.rows.size(); ++k) {
    const Row row{table, k};
    const double area = row["true_hump_area"];
    EXPECT_NEAR(row["area"], area, 120) << k;
    EXPECT_NEAR(row["position"], row["true_hump"], area > 1000 ? 0.4 : 2) << k;
  }
  std::remove(folder.file("table").c_str());
  RunOnSeries("crystallinity.recipe", "crystallising", kFrames);
  // It rises with the share of the lines, from and to what the scatter of the air decides.
  const Row first{table, 0}, last{table, kFrames - 1};
  const double slope = (last["crystallinity"] - first["crystallinity"]) /
                       (last["true_crystalline"] - first["true_crystalline"]);
  EXPECT_GT(slope, 30);
  for (std::size_t k = 0; k < table.rows.size(); ++k) {
    const Row row{table, k};
    const double share = row["true_crystalline"] - first["true_crystalline"];
    EXPECT_NEAR(row["crystallinity"], first["crystallinity"] + slope * share, 3) << k;
  }
}

constexpr double kFwhm = 0.12;

double Gaussian(double x, double place) {
  const double r = 2 * (x - place) / kFwhm;
  return std::exp2(-r * r);
}

// Areas of the two of `heights`.
TEST_F(Recipes, TwoLines) {
  const double area = kFwhm * std::sqrt(std::numbers::pi / std::numbers::ln2) / 2;
  const double heights[][2] = {{0, 4000}, {500, 3500}, {2500, 1500}};
  std::string words;
  for (const auto& [first, second] : heights) {
    std::string text;
    for (double x = 15; x < 21; x += 0.02)
      text += std::to_string(x) + " " +
              std::to_string(600 + first * Gaussian(x, 17.19) + second * Gaussian(x, 17.65)) + "\n";
    words += " " + std::to_string(static_cast<int>(first)) + ".xy";
    WriteFile(folder.file(words.substr(words.rfind(' ') + 1)), text);
  }
  Run("two-lines.recipe", words);
  for (std::size_t k = 0; k < table.rows.size(); ++k) {
    const Row row{table, k};
    EXPECT_EQ(row["not fitted 1"], k == 0);
    EXPECT_EQ(row["not fitted 2"], 0);
    EXPECT_NEAR(row["area 1"], area * heights[k][0], 3) << k;
    EXPECT_NEAR(row["area 2"], area * heights[k][1], 3) << k;
    EXPECT_NEAR(row["two-theta 2"], 17.65, 0.001) << k;
  }
}

}  // namespace
