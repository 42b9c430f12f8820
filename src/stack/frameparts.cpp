#include "stack/frameparts.h"

#include "framers/qframercnet.h"
#include "links/qlink.h"
#include "stack/framerstack.h"

#include <algorithm>

namespace {
// Keeps the first frame that is written. Answers as the local device of a cnet framer does, that
// the frame was sent; the other framers read nothing after a write.
class PaperLink final : public QLink
{
public:
    int open() override { return 0; }
    bool is_open() override { return true; }
    int close() override { return 0; }
    void flush() override {}
    int bytes_available() override { return 0; }
    int getchar() override { return LINK_IO; }
    int putchar(int c) override
    {
        written.append(char(c));
        return c;
    }
    int read(char* buffer, int nbytes) override
    {
        CnetLocalResponse{CnetLocalResponse::SENT}.build(response);
        const int count = std::min(nbytes, CnetLocalResponse::SIZE);
        std::copy_n(response, count, buffer);
        return count;
    }
    int write(const char* buffer, int nbytes) override
    {
        written.append(buffer, nbytes);
        return nbytes;
    }

    QByteArray written;

private:
    char response[CnetLocalResponse::SIZE] = {};
};

QByteArray frame_of(const QVector<FramerDescription>& framers, const QByteArray& payload)
{
    PaperLink link;
    const FramerStack stack(link, framers);
    stack.top().write(payload.constData(), int(payload.size()));
    return link.written;
}
} // namespace

// A framer's bytes are what its frame has more than what it was given.
QVector<FramePart> frame_parts(const QVector<FramerDescription>& framers, const QByteArray& payload)
{
    QVector<FramePart> parts = {{-1, payload}};
    QByteArray inner = payload;
    for (int place = int(framers.size()) - 1; place >= 0; --place) {
        const QByteArray frame = frame_of({framers[place]}, inner);
        if (frame.isEmpty())
            return {};
        const auto at = frame.indexOf(inner);
        if (at < 0) {
            parts = {{-1, frame}};
        } else {
            if (at > 0)
                parts.prepend({place, frame.left(at)});
            if (at + inner.size() < frame.size())
                parts.append({place, frame.mid(at + inner.size())});
        }
        inner = frame;
    }
    return parts;
}
