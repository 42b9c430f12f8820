#include "cli/capturedframes.h"

#include "cli/typedargument.h"

namespace {
constexpr int LONGEST_GAP_MS = 600'000;
constexpr std::int64_t NS_IN_MS = 1'000'000;

bool is_data(const CaptureRecord& record)
{
    return record.event == CaptureEvent::DataSent || record.event == CaptureEvent::DataReceived;
}
} // namespace

CapturedFrames::CapturedFrames(const Invocation& invocation, CapturedFile& capture)
    : capture(capture)
    , gap_ns(invocation.number("gap", 0, LONGEST_GAP_MS) * NS_IN_MS)
{
    if (invocation.has("frame"))
        framers = parse_argument("--frame", invocation.text("frame"), parse_framers,
                                 "`tarnwickctl help stack` shows all forms.");
}

std::optional<NumberedRecord> CapturedFrames::next()
{
    std::optional<NumberedRecord> frame = ahead ? std::move(ahead) : capture.next();
    ahead.reset();
    if (!frame || !is_data(frame->record))
        return frame;
    std::int64_t last_ns = frame->record.time_ns;
    while ((ahead = capture.next()) && continues(*frame, *ahead, last_ns)) {
        last_ns = ahead->record.time_ns;
        frame->record.bytes += ahead->record.bytes;
    }
    return frame;
}

FrameVerdict CapturedFrames::check(const NumberedRecord& frame) const
{
    return check_frame(framers, frame.record.direction, frame.record.bytes);
}

bool CapturedFrames::continues(const NumberedRecord& frame, const NumberedRecord& piece,
                               std::int64_t last_ns) const
{
    return piece.record.event == frame.record.event && piece.record.port == frame.record.port &&
           piece.record.comment.isEmpty() && piece.record.time_ns - last_ns <= gap_ns &&
           frame.record.bytes.size() + piece.record.bytes.size() <= FRAME_MAX;
}
