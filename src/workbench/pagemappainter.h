// How a page map looks. Needs no window: it paints on any device.
#pragma once

#include "workbench/cellgrid.h"
#include "workbench/pagemap.h"

#include <QColor>
#include <QCoreApplication>

class QPainter;
class QPalette;

struct PageWords
{
    Q_DECLARE_TR_FUNCTIONS(PageWords)
public:
    // As in the legend: "sent".
    static QString name(PageState state);
    // As in a cell's hover text.
    static QString meaning(PageState state);
};

// Told apart by brightness too, and on a dark ground as on a light one.
QColor page_colour(PageState state, const QPalette& palette);
// One swatch or cell. Some states have a mark beside their colour, for those who see no colours.
void paint_page(QPainter& painter, const QRect& cell, PageState state, const QPalette& palette);
void paint_page_map(QPainter& painter, const QRect& exposed, const CellGrid& grid,
                    const PageMap& map, const QPalette& palette);
