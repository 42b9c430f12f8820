// What framers put around a payload, part by part.
#pragma once

#include "stack/stacktext.h"

#include <QByteArray>

// The bytes that one framer writes before or after what it is given. The payload's framer is -1;
// so is that of a whole frame in which the payload doesn't show as it is.
struct FramePart
{
    int framer; // its place in the descriptions
    QByteArray bytes;
};

// The frame that goes out for this payload, from its first byte to its last; the parts joined are
// the frame. Empty when the framers refuse the payload.
QVector<FramePart> frame_parts(const QVector<FramerDescription>& framers,
                               const QByteArray& payload);
