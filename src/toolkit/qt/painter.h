// Paints a display list with QPainter: on the canvas, into a picture, on paper.
#pragma once

#include <QPainter>
#include <QPointF>
#include <QSizeF>

#include "toolkit/displaylist.h"

// Between user units and places on a target of a given size, y downward.
class Mapping {
 public:
  Mapping(const DisplayList& list, QSizeF target);
  QPointF Place(DrawPoint units) const { return {x0_ + units.x * kx_, y0_ + units.y * ky_}; }
  DrawPoint Units(QPointF place) const;
  double YScale() const { return -ky_; }  // target units of one user unit in y

 private:
  double x0_, y0_, kx_, ky_;
};

enum class Detail {
  EveryPoint,  // vector output
  PerColumn,   // a curve keeps what a column of pixels can show; the target's unit is the pixel
};

// `thin` is the width of a thin line, in units of the target.
void PaintList(QPainter& painter, const DisplayList& list, QSizeF target, double thin,
               Detail detail);
