// What framers say of bytes that were recorded.
#pragma once

#include "capture/capturerecord.h"
#include "stack/stacktext.h"

struct FrameVerdict
{
    bool good = true;
    QByteArray payload; // of the innermost framer that took its frame
    QString text;       // "good", or which framer refused it and why
};

// The frame as the framers see it, the one nearest to the link first.
FrameVerdict check_frame(const QVector<FramerDescription>& framers, CaptureDirection direction,
                         const QByteArray& frame);
