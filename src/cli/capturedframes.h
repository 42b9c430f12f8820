// The frames of a capture: pieces of one direction with no longer silence than a gap between.
#pragma once

#include "cli/capturedfile.h"
#include "cli/framecheck.h"

class CapturedFrames
{
public:
    // The capture outlives it. Throws Failure when --gap or --frame is wrong.
    CapturedFrames(const Invocation& invocation, CapturedFile& capture);

    // A frame, with number and time of its first piece, or a record that is no data.
    std::optional<NumberedRecord> next();
    FrameVerdict check(const NumberedRecord& frame) const;
    bool framed() const { return !framers.isEmpty(); }

private:
    // Frames are no longer; a stream without a silence is cut there.
    static constexpr int FRAME_MAX = 64 * 1024;

    bool continues(const NumberedRecord& frame, const NumberedRecord& piece,
                   std::int64_t last_ns) const;

    CapturedFile& capture;
    const std::int64_t gap_ns;
    QVector<FramerDescription> framers;
    std::optional<NumberedRecord> ahead;
};
