#include "framers/qframercrc16.h"

#include "checksum/crc.h"
#include "framers/frameio.h"

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
    return write_frame(*this, Crc16Frame{{buffer, std::size_t(nbytes)}}, Crc16Frame::OVERHEAD);
}

int QFramerCrc16::read(char* buffer, int nbytes)
{
    return read_frame(*this, buffer, nbytes, Crc16Frame::OVERHEAD, Crc16Frame::parse,
                      code_of_refused);
}
