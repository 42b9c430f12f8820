// The heat map of a search: one cell a pair of channel and rate, and what a cell means on hover or
// by the arrow keys.
#pragma once

#include "workbench/heatgrid.h"
#include "workbench/heatmap.h"

#include <QWidget>

class HeatMapView : public QWidget
{
    Q_OBJECT

public:
    explicit HeatMapView(QWidget* parent = nullptr);

    void map_set(const HeatMap& map);
    const HeatMap& map() const { return shown; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    // What the cell under the cursor means.
    void described(const QString& text);
    // By a click, or the arrow keys.
    void chosen(int channel, int rate);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QSize names() const;
    void cells_layout();
    void cursor_set(int channel, int rate);
    void accessible_text_set();

    HeatMap shown;
    HeatGrid grid;
    CnetPair cursor = {CNET_FIRST_CHANNEL, 0};
};

// The colours and what they mean.
class HeatLegend : public QWidget
{
    Q_OBJECT

public:
    explicit HeatLegend(QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Entry
    {
        HeatState state;
        int found;
        QString name;
    };
    QVector<Entry> entries() const;
    int entry_width(const Entry& entry) const;
};
