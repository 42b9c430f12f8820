#include "framers/qframerrwlt.h"

#include "framers/framebuffer.h"

namespace {
constexpr char START = '\xAB';
constexpr char END = '\xBA';
} // namespace

void RwltFrame::build(char* frame) const
{
    *frame++ = START;
    frame += payload.copy(frame, payload.size());
    *frame = END;
}

std::optional<RwltFrame> RwltFrame::parse(std::string_view frame)
{
    if (frame.size() < OVERHEAD || frame.front() != START || frame.back() != END)
        return std::nullopt;
    return RwltFrame{frame.substr(1, frame.size() - OVERHEAD)};
}

QFramerRwlt::QFramerRwlt(QFramer* lower)
{
    lower_set(lower);
}

void QFramerRwlt::flush()
{
    lower_flush();
}

int QFramerRwlt::write(const char* buffer, int nbytes)
{
    lower_flush();
    return with_frame_buffer(nbytes, RwltFrame::OVERHEAD, [&](FrameBuffer& frame) -> int {
        if (frame.data()) {
            RwltFrame{{buffer, std::size_t(nbytes)}}.build(frame.data());
            lower_write(frame.data(), frame.size());
        }
        return nbytes;
    });
}

int QFramerRwlt::read(char* buffer, int nbytes)
{
    return with_frame_buffer(nbytes, RwltFrame::OVERHEAD, [&](FrameBuffer& frame) -> int {
        const int received =
            frame.data() ? lower_read(frame.data(), frame.size()) : FRAMER_BAD_SIZE;
        if (received <= RwltFrame::OVERHEAD) {
            emit log(QFramer::tr("rwlt: read frame failed or time out, nbytes=%1").arg(received));
            return 0;
        }
        const auto good = RwltFrame::parse(frame.first(received));
        if (!good) {
            emit log(QFramer::tr("rwlt: not a valid data frame, nbytes=%1").arg(received));
            return 0;
        }
        return int(good->payload.copy(buffer, std::size_t(nbytes)));
    });
}
