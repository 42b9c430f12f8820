#include "terminal/pacedlabel.h"

#include "terminal/framepacer.h"

#include <QEvent>

PacedLabel::PacedLabel(const QString& text, QWidget* parent)
    : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText); // spares a search for tags in each text
    setFixedSize(sizeHint());
}

void PacedLabel::showEvent(QShowEvent* event)
{
    FramePacer::attach(window());
    make_room();
    QLabel::showEvent(event);
}

void PacedLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        setFixedSize(sizeHint());
}

void PacedLabel::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    if (sizeHint().width() > width()) // no layout may change under a running paint
        QMetaObject::invokeMethod(this, &PacedLabel::make_room, Qt::QueuedConnection);
}

void PacedLabel::make_room()
{
    setFixedSize(sizeHint().expandedTo(size()));
}
