#include "workbench/heatmapview.h"

#include "tools/cnetcfg.h"
#include "workbench/heatmappainter.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

namespace {
constexpr int SWATCH = 15; // px
constexpr int GAP = 6;
constexpr int LEAST_CELL = 19; // px; a channel's number fits below
} // namespace

HeatMapView::HeatMapView(QWidget* parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    accessible_text_set();
}

void HeatMapView::map_set(const HeatMap& map)
{
    shown = map;
    accessible_text_set();
    update();
}

QSize HeatMapView::names() const
{
    int widest = 0;
    for (int rate = 0; rate < CNET_RATES; ++rate)
        widest = std::max(widest, fontMetrics().horizontalAdvance(baud_text(rate)));
    return {widest + GAP, fontMetrics().height() + 2};
}

QSize HeatMapView::minimumSizeHint() const
{
    return {names().width() + CNET_CHANNELS * LEAST_CELL,
            names().height() + CNET_RATES * LEAST_CELL};
}

QSize HeatMapView::sizeHint() const
{
    return minimumSizeHint() + QSize(CNET_CHANNELS * GAP, CNET_RATES * GAP);
}

void HeatMapView::cells_layout()
{
    grid = HeatGrid(size(), names());
}

void HeatMapView::resizeEvent(QResizeEvent*)
{
    cells_layout();
}

void HeatMapView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        accessible_text_set();
    if (event->type() == QEvent::FontChange)
        cells_layout();
    QWidget::changeEvent(event);
}

void HeatMapView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paint_heat_map(painter, grid, shown, palette());
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(grid.cell(cursor.chan, cursor.baud).adjusted(0, 0, -2, -2));
    }
}

bool HeatMapView::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* const help = static_cast<QHelpEvent*>(event);
    CnetPair pair;
    if (grid.pair_at(help->pos(), pair))
        QToolTip::showText(help->globalPos(), HeatWords::meaning(shown, pair.chan, pair.baud), this,
                           grid.cell(pair.chan, pair.baud));
    else
        QToolTip::hideText();
    return true;
}

void HeatMapView::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        return cursor_set(cursor.chan - 1, cursor.baud);
    case Qt::Key_Right:
        return cursor_set(cursor.chan + 1, cursor.baud);
    case Qt::Key_Up:
        return cursor_set(cursor.chan, cursor.baud - 1);
    case Qt::Key_Down:
        return cursor_set(cursor.chan, cursor.baud + 1);
    default:
        QWidget::keyPressEvent(event);
    }
}

void HeatMapView::mousePressEvent(QMouseEvent* event)
{
    CnetPair pair;
    if (grid.pair_at(event->pos(), pair))
        cursor_set(pair.chan, pair.baud);
}

void HeatMapView::cursor_set(int channel, int rate)
{
    cursor.chan = std::clamp(channel, CNET_FIRST_CHANNEL, CNET_FIRST_CHANNEL + CNET_CHANNELS - 1);
    cursor.baud = std::clamp(rate, 0, CNET_RATES - 1);
    emit described(HeatWords::meaning(shown, cursor.chan, cursor.baud));
    emit chosen(cursor.chan, cursor.baud);
    update();
}

void HeatMapView::accessible_text_set()
{
    setAccessibleName(tr("map of channels and rates"));
    QStringList texts;
    for (const CnetPair& pair : cnet_pairs(~0u, ~0u)) {
        if (shown.found(pair.chan, pair.baud) > 0)
            texts += HeatWords::meaning(shown, pair.chan, pair.baud);
    }
    setAccessibleDescription(texts.isEmpty() ? tr("no device found") : texts.join(' '));
}

HeatLegend::HeatLegend(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QVector<HeatLegend::Entry> HeatLegend::entries() const
{
    return {{HeatState::Outside, 0, tr("not in this search")},
            {HeatState::Waiting, 0, tr("waiting")},
            {HeatState::Searching, 0, tr("being searched")},
            {HeatState::Searched, 0, tr("nobody")},
            {HeatState::Searched, 1, tr("one device")},
            {HeatState::Searched, 2, tr("two")},
            {HeatState::Searched, 3, tr("three")},
            {HeatState::Searched, HOTTEST, tr("more")}};
}

int HeatLegend::entry_width(const Entry& entry) const
{
    return SWATCH + GAP + fontMetrics().horizontalAdvance(entry.name) + 2 * GAP;
}

QSize HeatLegend::sizeHint() const
{
    int width = 0;
    for (const Entry& entry : entries())
        width += entry_width(entry);
    return {width, std::max(SWATCH, fontMetrics().height()) + 2};
}

void HeatLegend::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    int x = 0;
    for (const Entry& entry : entries()) {
        const int width = entry_width(entry);
        paint_heat_cell(painter, {x, (height() - SWATCH) / 2, SWATCH + 1, SWATCH + 1}, entry.state,
                        entry.found, palette());
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(QRect(x + SWATCH + GAP, 0, width, height()), Qt::AlignVCenter, entry.name);
        x += width;
    }
}

void HeatLegend::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        updateGeometry();
    QWidget::changeEvent(event);
}
