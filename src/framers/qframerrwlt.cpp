#include "framers/qframerrwlt.h"

#include "framers/frameio.h"

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
    write_frame(*this, RwltFrame{{buffer, std::size_t(nbytes)}}, RwltFrame::OVERHEAD);
    return nbytes;
}

int QFramerRwlt::read(char* buffer, int nbytes)
{
    const auto with_payload = [](std::string_view came) {
        return came.size() > RwltFrame::OVERHEAD ? RwltFrame::parse(came) : std::nullopt;
    };
    const auto refuse = [this](std::string_view, int received) {
        const QString text = received <= RwltFrame::OVERHEAD
                                 ? QFramer::tr("rwlt: read frame failed or time out, nbytes=%1")
                                 : QFramer::tr("rwlt: not a valid data frame, nbytes=%1");
        emit log(text.arg(received));
        return 0;
    };
    return read_frame(*this, buffer, nbytes, RwltFrame::OVERHEAD, with_payload, refuse);
}
