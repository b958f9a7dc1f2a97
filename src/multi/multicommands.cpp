// The menu "Multiple patterns" and its dialogs.
#include "multi/multi.h"
#include "toolkit/controls.h"
#include "workspace/menuids.h"
#include "workspace/parameters.h"
#include "workspace/workspace.h"

namespace {

using namespace controls;

constexpr int kMulti = MenuPopupMulti, kOverlay = 40034, kClose = MenuPopupClosePattern;

constexpr Control kDisplaceControls[] = {
    Number(1018, "2-theta", &ws.displacex, "(f10.2)", "deg."),
    Number(1019, "Intensity", &ws.displacey, "(f10.0)", "counts"),
    Ok,
    Cancel,
};
constexpr ParameterDialog kDisplace{.resource = {105, "Displace patterns", kDisplaceControls}};

constexpr Command kMultiCommands[] = {
    {.item = {kMulti, "Multiple patterns", 0, true}},
    {.item = {kOverlay, "Open pattern", kMulti, true}},
    {.item = {40040, "*.xy (General)", kOverlay}},
    {.item = {40035, "*.gdf (Huber)", kOverlay}},
    {.item = {40039, "*.txt (Bruker", kOverlay}},
    {.item = {40041, "*.uxd (Bruker)", kOverlay}},
    {.item = {40042, "*.cif (General)", kOverlay}},
    {.item = {40043, "*.dat (General)", kOverlay}},
    {.item = {40044, "*.xrdml (Panalytical)", kOverlay}},
    {.item = {40045, "*.udf (Stoe)", kOverlay}},
    {.item = {40142, "*.chi (Fit2D)", kOverlay}},
    {.item = {kClose, "Close pattern", kMulti, true}},
    {.item = {40037, "All", kClose}},
    {.item = {40048, "Empty", kClose}},
    {.item = {40049, "Empty", kClose}},
    {.item = {40050, "Empty", kClose}},
    {.item = {40051, "Empty", kClose}},
    {.item = {MenuAddPatterns, "Add patterns", kMulti}},
    {.item = {MenuDisplacePatterns, "Displace patterns", kMulti},
     .viewmode = 1,
     .plotmask = PlotInput,
     .dialog = &kDisplace,
     .redraw = Redraw::Full,
     .undo = true},
    {.item = {MenuFitPatterns, "Fit patterns", kMulti}},
    {.item = {MenuSaveFitted, "Save fitted pattern", kMulti}},
    {.item = {MenuClearFit, "Clear fit", kMulti}},
};

}  // namespace

std::span<const Command> MultiCommands() { return kMultiCommands; }
