#include "terminal/framepacer.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

void FramePacer::attach(QWidget* window)
{
    if (window->findChild<FramePacer*>(QString(), Qt::FindDirectChildrenOnly) == nullptr)
        new FramePacer(window);
}

FramePacer::FramePacer(QWidget* paced_window)
    : QObject(paced_window)
    , window(paced_window)
{
    next_frame.setSingleShot(true);
    next_frame.setTimerType(Qt::PreciseTimer);
    connect(&next_frame, &QTimer::timeout, this, &FramePacer::paint_now);
    window->installEventFilter(this);
}

bool FramePacer::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::UpdateRequest || watched != window || painting)
        return false;
    const qint64 elapsed = last_frame.isValid() ? last_frame.elapsed() : FRAME_MS;
    if (elapsed >= FRAME_MS) {
        next_frame.stop();
        last_frame.start();
        return false;
    }
    if (!next_frame.isActive())
        next_frame.start(static_cast<int>(FRAME_MS - elapsed));
    return true;
}

void FramePacer::paint_now()
{
    last_frame.start();
    painting = true;
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(window, &request);
    painting = false;
}
