// Keeps a window from painting more often than a screen can show.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QWidget;

// Every change of a widget asks its window for a paint, and the window paints as soon as its event
// loop comes round: with a fast port that is once for each chunk. This filter on the window lets
// one such request pass each FRAME_MS and holds back the next ones until their time has come;
// several changes then share one paint. It relies on QEvent::UpdateRequest being what makes a
// window paint its changed regions.
class FramePacer : public QObject
{
    Q_OBJECT
public:
    static constexpr int FRAME_MS = 16; // one frame of the usual 60 Hz screen

    // Paces `window`, once however often it is asked to. The window owns the pacer.
    static void attach(QWidget* window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit FramePacer(QWidget* window);
    void paint_now();

    QWidget* const window;
    QElapsedTimer last_frame;
    QTimer next_frame;
    bool painting = false;
};
