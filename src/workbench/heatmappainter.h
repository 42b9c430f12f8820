// How a heat map looks. Needs no window: it paints on any device.
#pragma once

#include "workbench/heatgrid.h"
#include "workbench/heatmap.h"

#include <QColor>
#include <QCoreApplication>

class QPainter;
class QPalette;

struct HeatWords
{
    Q_DECLARE_TR_FUNCTIONS(HeatWords)
public:
    // As in a cell's hover text: "Channel 12, 500 kbps: 2 devices answered."
    static QString meaning(const HeatMap& map, int channel, int rate);
};

constexpr int HOTTEST = 4; // devices on one pair; more look the same

// Of a searched pair, and of one that isn't; told apart by brightness too, on a dark ground as on a
// light one.
QColor heat_colour(int found, const QPalette& palette);
QColor heat_colour(HeatState state, const QPalette& palette);
// Black or white, whichever shows on this colour.
QColor ink_on(const QColor& colour);
void paint_heat_cell(QPainter& painter, const QRect& cell, HeatState state, int found,
                     const QPalette& palette);
void paint_heat_map(QPainter& painter, const HeatGrid& grid, const HeatMap& map,
                    const QPalette& palette);
