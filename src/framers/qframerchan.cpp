#include "framers/qframerchan.h"

#include "framers/framebuffer.h"

#include <algorithm>

void ChanFrame::build(char* frame) const
{
    char* behind_prefix = frame + prefix.copy(frame, prefix.size());
    payload.copy(behind_prefix, payload.size());
}

std::optional<ChanFrame> ChanFrame::parse(std::string_view frame, std::string_view prefix)
{
    if (frame.size() <= prefix.size() || frame.substr(0, prefix.size()) != prefix)
        return std::nullopt;
    return ChanFrame{prefix, frame.substr(prefix.size())};
}

QFramerChan::QFramerChan(QFramer* lower)
{
    lower_set(lower);
}

void QFramerChan::chan_set(std::uint8_t chan)
{
    chan_set(&chan, 1);
}

void QFramerChan::chan_set(std::uint16_t chan)
{
    const std::uint8_t bytes[] = {std::uint8_t(chan >> 8), std::uint8_t(chan)};
    chan_set(bytes, sizeof bytes);
}

void QFramerChan::chan_set(const void* chan, unsigned nbytes)
{
    if (nbytes > PREFIX_MAX)
        return;
    std::copy_n(static_cast<const std::uint8_t*>(chan), nbytes, prefix);
    prefix_length = int(nbytes);
}

void QFramerChan::flush()
{
    lower_flush();
}

int QFramerChan::write(const char* buffer, int nbytes)
{
    return with_frame_buffer(nbytes, prefix_length, [&](FrameBuffer& frame) -> int {
        if (!frame.data())
            return FRAMER_BAD_SIZE;
        ChanFrame{prefix_bytes(), {buffer, std::size_t(nbytes)}}.build(frame.data());
        return lower_write(frame.data(), frame.size());
    });
}

int QFramerChan::read(char* buffer, int nbytes)
{
    return with_frame_buffer(nbytes, prefix_length, [&](FrameBuffer& frame) -> int {
        if (!frame.data())
            return FRAMER_BAD_SIZE;
        const int received = lower_read(frame.data(), frame.size());
        const auto good = ChanFrame::parse(frame.first(received), prefix_bytes());
        return good ? int(good->payload.copy(buffer, std::size_t(nbytes))) : FRAMER_BAD_FRAME;
    });
}

std::string_view QFramerChan::prefix_bytes() const
{
    return {reinterpret_cast<const char*>(prefix), std::size_t(prefix_length)};
}
