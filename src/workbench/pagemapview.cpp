#include "workbench/pagemapview.h"

#include "workbench/pagemappainter.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

namespace {
constexpr int SWATCH = 13; // px
constexpr int GAP = 6;
} // namespace

PageMapView::PageMapView(QWidget* parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(120, 60);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    accessible_text_set();
}

void PageMapView::map_set(const PageMap& map)
{
    const bool other = map.count() != shown.count();
    shown = map;
    if (other) {
        cursor = 0;
        layout_cells();
    }
    accessible_text_set();
    update();
}

QString PageMapView::page_text(int page) const
{
    const PageState state = shown.state(page);
    const int offset = shown.offset(page);
    return tr("Page %1, bytes %2 to %3: %4. %5")
        .arg(QString::number(page), QString::number(offset),
             QString::number(offset + shown.bytes(page) - 1), PageWords::name(state),
             PageWords::meaning(state));
}

QSize PageMapView::sizeHint() const
{
    return {320, 140};
}

void PageMapView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    if (shown.count() == 0) {
        painter.setPen(palette().color(QPalette::Disabled, QPalette::WindowText));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap,
                         tr("The pages show here once the module has said how large they are."));
        return;
    }
    paint_page_map(painter, event->rect(), grid, shown, palette());
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(grid.cell(cursor).adjusted(0, 0, -2, -2));
    }
}

void PageMapView::resizeEvent(QResizeEvent*)
{
    layout_cells();
}

void PageMapView::layout_cells()
{
    grid = CellGrid(shown.count(), size());
}

bool PageMapView::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        const int page = grid.cell_at(help->pos());
        if (page >= 0)
            QToolTip::showText(help->globalPos(), page_text(page), this, grid.cell(page));
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(event);
}

void PageMapView::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        return cursor_move(cursor - 1);
    case Qt::Key_Right:
        return cursor_move(cursor + 1);
    case Qt::Key_Up:
        return cursor_move(cursor - grid.columns());
    case Qt::Key_Down:
        return cursor_move(cursor + grid.columns());
    default:
        QWidget::keyPressEvent(event);
    }
}

void PageMapView::cursor_move(int page)
{
    if (page < 0 || page >= shown.count())
        return;
    cursor = page;
    emit described(page_text(page));
    update();
}

void PageMapView::accessible_text_set()
{
    setAccessibleName(tr("map of the pages"));
    QStringList counts;
    for (int state = 0; state < PAGE_STATES; ++state) {
        if (const int count = shown.count_of(PageState(state)))
            counts += QStringLiteral("%1 %2").arg(PageWords::name(PageState(state))).arg(count);
    }
    setAccessibleDescription(counts.join(", "));
}

PageLegend::PageLegend(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

int PageLegend::entry_width(int state) const
{
    const QString name = PageWords::name(PageState(state));
    return SWATCH + GAP + fontMetrics().horizontalAdvance(name) + 3 * GAP;
}

QSize PageLegend::sizeHint() const
{
    int width = 0;
    for (int state = 0; state < PAGE_STATES; ++state)
        width += entry_width(state);
    return {width, std::max(SWATCH, fontMetrics().height()) + 2};
}

void PageLegend::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    int x = 0;
    for (int state = 0; state < PAGE_STATES; ++state) {
        const QRect swatch(x, (height() - SWATCH) / 2, SWATCH, SWATCH);
        paint_page(painter, swatch, PageState(state), palette());
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(QRect(x + SWATCH + GAP, 0, entry_width(state), height()), Qt::AlignVCenter,
                         PageWords::name(PageState(state)));
        x += entry_width(state);
    }
}

void PageLegend::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        updateGeometry();
    QWidget::changeEvent(event);
}
