// The example patterns.
#include "examples.h"
#include "workspace/workspace.h"

// clang-format off
const std::vector<Example> kExamples = {
    // file, what it is,
    // structure, wavelengths,
    // start, step, points, u, v, w, shape, highest, background, crystalline, seed, humps
    {"ceria.xy", "CeO2, cubic; alpha1 alone, sharp lines",
     "ceria", CuKalpha1, 0,
     20, 0.02, 5501, 0.010, -0.006, 0.006, 0.4, 22000, 60, 1, 1, {}},
    {"corundum.xrdml", "Al2O3, trigonal with hexagonal axes; alpha1 and alpha2",
     "corundum", CuKalpha1, CuKalpha2,
     15, 0.02, 5501, 0.008, -0.005, 0.005, 0.3, 12000, 45, 1, 2, {}},
    {"forsterite.gdf", "Mg2SiO4, orthorhombic; alpha1 of a focusing camera, narrow lines",
     "forsterite", CuKalpha1, 0,
     10, 0.01, 9001, 0.006, -0.003, 0.004, 0.5, 9000, 120, 1, 3, {}},
    {"gypsum.uxd", "CaSO4 2H2O, monoclinic; alpha1 and alpha2, many overlaps",
     "gypsum", CuKalpha1, CuKalpha2,
     8, 0.02, 4101, 0.012, -0.006, 0.008, 0.5, 30000, 80, 1, 4, {}},
    {"halite.udf", "NaCl, cubic; alpha1 and alpha2 parted at high angles",
     "halite", CuKalpha1, CuKalpha2,
     20, 0.025, 4960, 0.006, -0.004, 0.006, 0.3, 26000, 40, 1, 5, {}},
    {"rutile.cif", "TiO2, tetragonal; alpha1 of cobalt: set the wavelength to 1.78897",
     "rutile", 1.78897, 0,
     20, 0.02, 5501, 0.015, -0.008, 0.012, 0.5, 8000, 70, 1, 6, {}},
    {"calcite.txt", "CaCO3, trigonal with hexagonal axes; alpha1 and alpha2, quick scan",
     "calcite", CuKalpha1, CuKalpha2,
     18, 0.03, 3068, 0.014, -0.007, 0.011, 0.6, 2500, 25, 1, 7, {}},
    {"silicon.chi", "Si, cubic; synchrotron and area detector: set the wavelength to 0.4",
     "silicon", 0.4, 0,
     3, 0.008, 3500, 0.02, 0.0, 0.0016, 0.2, 60000, 200, 1, 8, {}},
    {"quartz-in-glass.dat", "SiO2, trigonal with hexagonal axes, in glass: a strong hump",
     "quartz", CuKalpha1, 0,
     10, 0.02, 3510, 0.010, -0.005, 0.010, 0.5, 6000, 40, 0.12, 9,
     {{21.8, 8.0, 1.0}, {44.0, 18.0, 0.15}}},
    {"polyethylene.xy", "(CH2)n, orthorhombic, wide lines on the hump of the melt; alpha1 alone",
     "polyethylene", CuKalpha1, 0,
     10, 0.05, 1001, 0.5, 0.0, 0.10, 0.6, 4000, 30, 0.60, 10, {{19.6, 6.0, 1.0}}},
    {"albite.xy", "NaAlSi3O8, triclinic; alpha1 alone, slow scan",
     "albite", CuKalpha1, 0,
     10, 0.02, 3501, 0.008, -0.004, 0.006, 0.4, 15000, 90, 1, 11, {}},
};
// clang-format on
