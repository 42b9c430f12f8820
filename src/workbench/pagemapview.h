// The page map of a module: one cell a page, and what a cell means on hover or by the arrow keys.
#pragma once

#include "workbench/cellgrid.h"
#include "workbench/pagemap.h"

#include <QWidget>

class PageMapView : public QWidget
{
    Q_OBJECT

public:
    explicit PageMapView(QWidget* parent = nullptr);

    void map_set(const PageMap& map);
    const PageMap& map() const { return shown; }
    // "Page 3, bytes 12288 to 16383: sent. ..."
    QString page_text(int page) const;

    QSize sizeHint() const override;

signals:
    // What the page under the pointer or cursor is; empty for none.
    void described(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void layout_cells();
    void cursor_move(int page);
    void accessible_text_set();

    PageMap shown;
    CellGrid grid;
    int cursor = 0; // the page that the arrow keys are at
};

// The colours and their names.
class PageLegend : public QWidget
{
    Q_OBJECT

public:
    explicit PageLegend(QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int entry_width(int state) const;
};
