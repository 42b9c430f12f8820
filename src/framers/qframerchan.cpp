#include "framers/qframerchan.h"

#include "framers/frameio.h"

#include <algorithm>

void ChanFrame::build(char* frame) const
{
    char* after_prefix = frame + prefix.copy(frame, prefix.size());
    payload.copy(after_prefix, payload.size());
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
    return write_frame(*this, ChanFrame{prefix_bytes(), {buffer, std::size_t(nbytes)}},
                       prefix_length);
}

int QFramerChan::read(char* buffer, int nbytes)
{
    return read_frame(
        *this, buffer, nbytes, prefix_length,
        [this](std::string_view came) { return ChanFrame::parse(came, prefix_bytes()); },
        [](std::string_view came, int) {
            return came.data() ? FRAMER_BAD_FRAME : FRAMER_BAD_SIZE;
        });
}

std::string_view QFramerChan::prefix_bytes() const
{
    return {reinterpret_cast<const char*>(prefix), std::size_t(prefix_length)};
}
