#include "framers/qframercnet.h"

#include "framers/frameio.h"

#include <cstring>
#include <utility>

namespace {

constexpr char START = '\xAA';
constexpr char END = '\x55';
constexpr char RESPONSE_LENGTH = 1;
// The length byte counts all of a frame but the start, itself and the end.
constexpr int NOT_COUNTED = 3;
constexpr int ADDRESSING = CnetFrame::OVERHEAD - NOT_COUNTED;

std::array<std::uint8_t, 2> high_byte_first(std::uint16_t address)
{
    return {std::uint8_t(address >> 8), std::uint8_t(address)};
}

QString hex(int value)
{
    return QStringLiteral("%1").arg(value, 2, 16, QLatin1Char('0'));
}

} // namespace

void CnetFrame::build(char* frame) const
{
    *frame++ = START;
    *frame++ = char(payload.size() + ADDRESSING);
    *frame++ = char(command);
    *frame++ = char(address[0]);
    *frame++ = char(address[1]);
    frame += payload.copy(frame, payload.size());
    *frame = END;
}

std::optional<CnetFrame> CnetFrame::parse(std::string_view frame)
{
    if (frame.size() < OVERHEAD || frame.front() != START || frame.back() != END ||
        std::uint8_t(frame[2]) != DATA || int(frame.size()) != std::uint8_t(frame[1]) + NOT_COUNTED)
        return std::nullopt;
    return CnetFrame{DATA,
                     {std::uint8_t(frame[3]), std::uint8_t(frame[4])},
                     frame.substr(5, frame.size() - OVERHEAD)};
}

void CnetLocalResponse::build(char* response) const
{
    response[0] = START;
    response[1] = RESPONSE_LENGTH;
    response[2] = char(status);
    response[3] = END;
}

std::optional<CnetLocalResponse> CnetLocalResponse::parse(std::string_view response)
{
    if (response.size() != SIZE || response.front() != START || response[1] != RESPONSE_LENGTH ||
        response.back() != END)
        return std::nullopt;
    return CnetLocalResponse{std::uint8_t(response[2])};
}

QFramerCnet::QFramerCnet(QFramer* lower)
{
    lower_set(lower);
}

void QFramerCnet::target_set(const std::uint8_t* address)
{
    target = {address[0], address[1]};
}

void QFramerCnet::target_set(std::uint16_t address)
{
    target_set(high_byte_first(address).data());
}

void QFramerCnet::keep_trying_set(std::function<bool()> keep_trying)
{
    this->keep_trying = std::move(keep_trying);
}

void QFramerCnet::flush()
{
    lower_flush();
}

int QFramerCnet::write(const char* buffer, int nbytes)
{
    return write_to(target.data(), buffer, nbytes);
}

int QFramerCnet::read(char* buffer, int nbytes)
{
    const auto from_target = [this](std::string_view came) {
        auto frame = came.size() > CnetFrame::OVERHEAD ? CnetFrame::parse(came) : std::nullopt;
        if (frame && frame->address != target)
            frame.reset();
        return frame;
    };
    const auto refuse = [this](std::string_view came, int received) {
        if (received <= CnetFrame::OVERHEAD)
            emit log(QFramer::tr("cnet: read frame failed or time out, nbytes=%1").arg(received));
        else if (const auto frame = CnetFrame::parse(came))
            emit log(QFramer::tr("cnet: frame not from target (%1H)")
                         .arg(hex(frame->address[0] << 8 | frame->address[1])));
        else
            emit log(QFramer::tr("cnet: not a valid data frame, nbytes=%1").arg(received));
        return 0;
    };
    return read_frame(*this, buffer, nbytes, CnetFrame::OVERHEAD, from_target, refuse);
}

int QFramerCnet::frame_send(const std::uint8_t* address, const char* buffer, int nbytes,
                            std::uint8_t command)
{
    if (nbytes < 0 || nbytes > CnetFrame::PAYLOAD_MAX)
        return FRAMER_BAD_SIZE;
    lower_flush(); // or a response that came late would be taken for this send's

    char frame[CnetFrame::PAYLOAD_MAX + CnetFrame::OVERHEAD];
    CnetFrame{command, {address[0], address[1]}, {buffer, std::size_t(nbytes)}}.build(frame);
    lower_write(frame, nbytes + CnetFrame::OVERHEAD); // a failure shows as a missing response

    char response[CnetLocalResponse::SIZE];
    const int received = lower_read(response, CnetLocalResponse::SIZE);
    if (received < 0) {
        emit log(QFramer::tr("cnet: local response failed (%1)")
                     .arg(QString::fromLocal8Bit(std::strerror(-received))));
        return received;
    }
    if (received < CnetLocalResponse::SIZE) {
        emit log(QFramer::tr("cnet: local no response"));
        return 0;
    }
    const auto good = CnetLocalResponse::parse({response, CnetLocalResponse::SIZE});
    if (!good) {
        emit log(QFramer::tr("cnet: response error, lost sync ?"));
        return 0;
    }
    switch (good->status) {
    case CnetLocalResponse::SENT:
        return nbytes;
    case CnetLocalResponse::AGAIN:
        return CNET_TRY_AGAIN;
    case CnetLocalResponse::BUSY:
        return CNET_BUSY;
    default:
        emit log(QFramer::tr("cnet: send failed (errno=%1H)").arg(hex(good->status)));
        return 0;
    }
}

int QFramerCnet::frame_send_retry(const std::uint8_t* address, const char* buffer, int nbytes,
                                  std::uint8_t command)
{
    int result = 0;
    do
        result = frame_send(address, buffer, nbytes, command);
    while ((result == CNET_TRY_AGAIN || result == CNET_BUSY) && (!keep_trying || keep_trying()));
    return result;
}

int QFramerCnet::frame_send_retry(const char* buffer, int nbytes, std::uint8_t command)
{
    return frame_send_retry(target.data(), buffer, nbytes, command);
}

int QFramerCnet::write_to(const std::uint8_t* address, const char* buffer, int nbytes)
{
    return frame_send_retry(address, buffer, nbytes, CnetFrame::DATA);
}

int QFramerCnet::write_to(std::uint16_t address, const char* buffer, int nbytes)
{
    return write_to(high_byte_first(address).data(), buffer, nbytes);
}
