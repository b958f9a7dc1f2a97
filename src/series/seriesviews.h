// The views of a series one by one, for picture.cpp.
#pragma once

#include "plot/guestview.h"
#include "series/mapcells.h"
#include "series/picture.h"

// A picture, and what the map of it has been worked out to.
struct SeriesShown {
  SeriesPicture picture;
  Range counts{0, 1};  // of the colours
  MapCells cells;
};

// Each view without the functions it draws and reads out with; nothing where there is nothing to be
// seen. Places are in data units of the frame.
std::optional<GuestView> MapView(const SeriesShown& shown);
void DrawMap(const SeriesShown& shown);
int MapFileAt(const SeriesShown& shown, float x, float y);

std::optional<GuestView> WaterfallView(const SeriesShown& shown);
void DrawWaterfall(const SeriesShown& shown);
int WaterfallFileAt(const SeriesShown& shown, float x, float y);

std::optional<GuestView> ColumnView(const SeriesShown& shown);
void DrawColumn(const SeriesShown& shown);
int ColumnFileAt(const SeriesShown& shown, float x, float y);

// The name of an axis along which the files stand, and where a file stands on it.
std::string AlongName(const SeriesPicture& picture);
// The column of the map at a place of the x axis on show.
std::size_t ColumnOfMap(const SeriesMap& map, float shownx);
