#include "framers/qframercrc16.h"

#include "checksum/crc.h"
#include "framers/framebuffer.h"

void Crc16Frame::build(char* frame) const
{
    char* end = frame + payload.copy(frame, payload.size());
    const unsigned crc = crc16(frame, int(payload.size()));
    *end++ = char(crc & 0xFF);
    *end = char(crc >> 8);
}

std::optional<Crc16Frame> Crc16Frame::parse(std::string_view frame)
{
    if (frame.size() < OVERHEAD || crc16(frame.data(), int(frame.size())) != 0)
        return std::nullopt;
    return Crc16Frame{frame.substr(0, frame.size() - OVERHEAD)};
}

QFramerCrc16::QFramerCrc16(QFramer* lower)
{
    lower_set(lower);
}

void QFramerCrc16::flush()
{
    lower_flush();
}

int QFramerCrc16::write(const char* buffer, int nbytes)
{
    return with_frame_buffer(nbytes, Crc16Frame::OVERHEAD, [&](FrameBuffer& frame) -> int {
        if (!frame.data())
            return FRAMER_BAD_SIZE;
        Crc16Frame{{buffer, std::size_t(nbytes)}}.build(frame.data());
        return lower_write(frame.data(), frame.size());
    });
}

int QFramerCrc16::read(char* buffer, int nbytes)
{
    return with_frame_buffer(nbytes, Crc16Frame::OVERHEAD, [&](FrameBuffer& frame) -> int {
        if (!frame.data())
            return FRAMER_BAD_SIZE;
        const int received = lower_read(frame.data(), frame.size());
        if (received < 1)
            return received;
        const auto good = Crc16Frame::parse(frame.first(received));
        return good ? int(good->payload.copy(buffer, std::size_t(nbytes))) : FRAMER_BAD_FRAME;
    });
}
