#include "workbench/heatmappainter.h"

#include "tools/cnetcfg.h"

#include <QPainter>
#include <QPalette>
#include <algorithm>

namespace {
struct Shade
{
    QRgb on_light;
    QRgb on_dark;
};

// By the devices that answered: more of them are further from the ground.
constexpr Shade FOUND[HOTTEST + 1] = {{0xFFA9C6E0, 0xFF35516B},
                                      {0xFFF2C14E, 0xFFA87A1A},
                                      {0xFFE8862A, 0xFFD08A30},
                                      {0xFFCC4A1C, 0xFFF0A860},
                                      {0xFF8E1616, 0xFFFFD9B0}};
// Outside, waiting, under way.
constexpr Shade STATES[] = {
    {0xFFF4F4F4, 0xFF262626}, {0xFFDADADA, 0xFF474747}, {0xFF3E9A4A, 0xFF4CB05A}};
constexpr int MIDDLE = 140; // of the brightness that eyes see, at which the ink changes

bool is_dark(const QPalette& palette)
{
    return palette.color(QPalette::Base).lightness() < 128;
}

QColor colour_of(const Shade& shade, const QPalette& palette)
{
    return QColor(is_dark(palette) ? shade.on_dark : shade.on_light);
}

// A bar for the pair under way and the number of devices, for those who see no colours.
void paint_mark(QPainter& painter, const QRect& cell, HeatState state, int found)
{
    const QRect mark = cell.adjusted(3, 3, -4, -4);
    if (found > 0)
        painter.drawText(cell, Qt::AlignCenter, QString::number(found));
    else if (state == HeatState::Searching)
        painter.drawLine(mark.left(), mark.center().y(), mark.right(), mark.center().y());
}
} // namespace

QString HeatWords::meaning(const HeatMap& map, int channel, int rate)
{
    const QString place = tr("Channel %1, %2").arg(channel).arg(baud_text(rate));
    const int found = map.found(channel, rate);
    const auto sentence = [&](const QString& what) { return tr("%1: %2").arg(place, what); };
    if (found > 0)
        return sentence(found == 1 ? tr("one device answered.")
                                   : tr("%1 devices answered.").arg(found));
    switch (map.state(channel, rate)) {
    case HeatState::Outside:
        return sentence(tr("not in this search."));
    case HeatState::Waiting:
        return sentence(tr("not searched yet."));
    case HeatState::Searching:
        return sentence(tr("being searched."));
    case HeatState::Searched:
        return sentence(tr("nobody answered."));
    }
    return {};
}

QColor heat_colour(int found, const QPalette& palette)
{
    return colour_of(FOUND[std::clamp(found, 0, HOTTEST)], palette);
}

QColor heat_colour(HeatState state, const QPalette& palette)
{
    return state == HeatState::Searched ? heat_colour(0, palette)
                                        : colour_of(STATES[int(state)], palette);
}

QColor ink_on(const QColor& colour)
{
    return qGray(colour.rgb()) >= MIDDLE ? Qt::black : Qt::white;
}

void paint_heat_cell(QPainter& painter, const QRect& cell, HeatState state, int found,
                     const QPalette& palette)
{
    const QColor colour = found > 0 ? heat_colour(found, palette) : heat_colour(state, palette);
    painter.fillRect(cell.adjusted(0, 0, -1, -1), colour);
    painter.setPen(QPen(ink_on(colour), 1.5));
    paint_mark(painter, cell.adjusted(0, 0, -1, -1), state, found);
}

void paint_heat_map(QPainter& painter, const HeatGrid& grid, const HeatMap& map,
                    const QPalette& palette)
{
    for (const CnetPair& pair : cnet_pairs(~0u, ~0u))
        paint_heat_cell(painter, grid.cell(pair.chan, pair.baud), map.state(pair.chan, pair.baud),
                        map.found(pair.chan, pair.baud), palette);
    painter.setPen(palette.color(QPalette::WindowText));
    for (int rate = 0; rate < CNET_RATES; ++rate)
        painter.drawText(grid.rate_name(rate), Qt::AlignVCenter | Qt::AlignLeft, baud_text(rate));
    for (int i = 0; i < CNET_CHANNELS; ++i)
        painter.drawText(grid.channel_name(CNET_FIRST_CHANNEL + i), Qt::AlignCenter,
                         QString::number(CNET_FIRST_CHANNEL + i));
}
