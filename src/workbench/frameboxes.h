// A frame as boxes, one a part, with the bytes of an example in them.
#pragma once

#include "stack/frameparts.h"

#include <QWidget>

class FrameBoxes : public QWidget
{
    Q_OBJECT

public:
    explicit FrameBoxes(QWidget* parent = nullptr);

    void framers_set(const QVector<FramerDescription>& framers);
    // What is in the boxes: "rtu:1 [01] payload [61 02] rtu:1 [..]".
    QString text() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QString title(const FramePart& part) const;
    int box_width(const FramePart& part) const;
    void paint_box(QPainter& painter, const QRect& box, const FramePart& part) const;

    QVector<FramerDescription> framers;
    QVector<FramePart> parts;
};
