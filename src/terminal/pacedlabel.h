// A label for a number that changes with every chunk of data.
#pragma once

#include <QLabel>

// `setText` on an ordinary label has its window laid out and painted anew each time. This one
// keeps a fixed size, so that no layout is disturbed, until a text needs more room; its window
// paints at most once a frame. text() is what was set last, at once.
class PacedLabel : public QLabel
{
    Q_OBJECT
public:
    explicit PacedLabel(const QString& text = QString(), QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void make_room();
};
