#include "framers/qframerrtu.h"

#include "checksum/crc.h"
#include "framers/frameio.h"

void RtuFrame::build(char* frame) const
{
    frame[0] = char(address);
    char* end = frame + 1 + payload.copy(frame + 1, payload.size());
    const unsigned crc = crc16(frame, int(payload.size()) + 1);
    *end++ = char(crc & 0xFF);
    *end = char(crc >> 8);
}

std::optional<RtuFrame> RtuFrame::parse(std::string_view frame)
{
    // The two bytes FF FF pass the CRC too, but hold no address.
    if (frame.size() < OVERHEAD || crc16(frame.data(), int(frame.size())) != 0)
        return std::nullopt;
    return RtuFrame{std::uint8_t(frame[0]), frame.substr(1, frame.size() - OVERHEAD)};
}

QFramerRtu::QFramerRtu(QFramer* lower)
{
    lower_set(lower);
}

void QFramerRtu::slave_set(std::uint8_t slave)
{
    this->slave = slave;
}

void QFramerRtu::flush()
{
    lower_flush();
}

int QFramerRtu::write(const char* buffer, int nbytes)
{
    return write_to(slave, buffer, nbytes);
}

int QFramerRtu::read(char* buffer, int nbytes)
{
    return read_from(slave, buffer, nbytes);
}

int QFramerRtu::write_to(std::uint8_t address, const char* buffer, int nbytes)
{
    return write_frame(*this, RtuFrame{address, {buffer, std::size_t(nbytes)}}, RtuFrame::OVERHEAD);
}

int QFramerRtu::read_from(std::uint8_t address, char* buffer, int nbytes)
{
    const auto from_address = [address](std::string_view came) {
        auto frame = RtuFrame::parse(came);
        if (frame && frame->address != address)
            frame.reset();
        return frame;
    };
    return read_frame(*this, buffer, nbytes, RtuFrame::OVERHEAD, from_address, code_of_refused);
}
