#include "workbench/pagemappainter.h"

#include <QPainter>
#include <QPalette>

namespace {
struct Look
{
    PageState state;
    QRgb on_light;
    QRgb on_dark;
    const char* name;
    const char* meaning;
};

constexpr Look LOOKS[PAGE_STATES] = {
    {PageState::Unknown, 0xFFD8D8D8, 0xFF4A4A4A, QT_TRANSLATE_NOOP("PageWords", "unknown"),
     QT_TRANSLATE_NOOP("PageWords", "The module hasn't been asked about this page yet.")},
    {PageState::Equal, 0xFF9CC3E6, 0xFF3E6C94, QT_TRANSLATE_NOOP("PageWords", "equal"),
     QT_TRANSLATE_NOOP("PageWords", "The module held this page already; it isn't sent.")},
    {PageState::Differs, 0xFFF0C040, 0xFFB08820, QT_TRANSLATE_NOOP("PageWords", "differs"),
     QT_TRANSLATE_NOOP("PageWords", "The module holds something else here.")},
    {PageState::Sending, 0xFFE08010, 0xFFF09830, QT_TRANSLATE_NOOP("PageWords", "being sent"),
     QT_TRANSLATE_NOOP("PageWords", "Packets of this page are on their way.")},
    {PageState::Sent, 0xFF3E9A4A, 0xFF4CB05A, QT_TRANSLATE_NOOP("PageWords", "sent"),
     QT_TRANSLATE_NOOP("PageWords", "The module has accepted every packet of this page.")},
    {PageState::Failed, 0xFFC0282D, 0xFFE05055, QT_TRANSLATE_NOOP("PageWords", "failed"),
     QT_TRANSLATE_NOOP("PageWords", "All attempts for this page were used up.")},
};

const Look& look(PageState state)
{
    return LOOKS[int(state)];
}

bool is_dark(const QPalette& palette)
{
    return palette.color(QPalette::Base).lightness() < 128;
}

void paint_mark(QPainter& painter, const QRect& cell, PageState state, const QPalette& palette)
{
    const QRect mark = cell.adjusted(3, 3, -3, -3);
    if (mark.width() < 3)
        return;
    painter.setPen(QPen(is_dark(palette) ? Qt::black : Qt::white, 1.5));
    if (state == PageState::Failed) {
        painter.drawLine(mark.topLeft(), mark.bottomRight());
        painter.drawLine(mark.bottomLeft(), mark.topRight());
    } else if (state == PageState::Sending) {
        painter.drawLine(mark.left(), mark.center().y(), mark.right(), mark.center().y());
    } else if (state == PageState::Differs) {
        painter.drawPoint(mark.center());
    }
}
} // namespace

QString PageWords::name(PageState state)
{
    return tr(look(state).name);
}

QString PageWords::meaning(PageState state)
{
    return tr(look(state).meaning);
}

QColor page_colour(PageState state, const QPalette& palette)
{
    return QColor(is_dark(palette) ? look(state).on_dark : look(state).on_light);
}

void paint_page(QPainter& painter, const QRect& cell, PageState state, const QPalette& palette)
{
    painter.fillRect(cell.adjusted(0, 0, -1, -1), page_colour(state, palette));
    paint_mark(painter, cell, state, palette);
}

void paint_page_map(QPainter& painter, const QRect& exposed, const CellGrid& grid,
                    const PageMap& map, const QPalette& palette)
{
    for (int page = 0; page < map.count(); ++page) {
        const QRect cell = grid.cell(page);
        if (cell.intersects(exposed))
            paint_page(painter, cell, map.state(page), palette);
    }
}
