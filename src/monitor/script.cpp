#include "monitor/script.h"

#include <cstdint>

namespace {
// The bytes at the end that begin a character whose rest hasn't come yet.
int open_end(const QByteArray& bytes)
{
    constexpr int LONGEST = 4;
    for (int count = 1; count < LONGEST && count <= bytes.size(); ++count) {
        const auto byte = std::uint8_t(bytes[bytes.size() - count]);
        if ((byte & 0xc0) == 0x80)
            continue;
        const int size = byte >= 0xf0 ? 4 : byte >= 0xe0 ? 3 : byte >= 0xc0 ? 2 : 1;
        return size > count ? count : 0;
    }
    return 0;
}
} // namespace

Script::Script(const QVector<ScriptStep>& steps, const std::optional<QRegularExpression>& until)
    : steps(steps)
    , until_given(until.has_value())
{
    if (until)
        this->steps.append({*until, {}});
}

QVector<QByteArray> Script::feed(const QByteArray& bytes)
{
    QVector<QByteArray> replies;
    if (done == steps.size())
        return replies;
    window += bytes;
    while (done < steps.size()) {
        // With its size, or a NUL would end it.
        const QString text = QString::fromUtf8(window.constData(), int(window.size()));
        const auto match = steps[done].expected.match(text);
        if (!match.hasMatch())
            break;
        const QByteArray open = window.right(open_end(window));
        const QString whole =
            QString::fromUtf8(window.constData(), int(window.size() - open.size()));
        window = match.capturedEnd() > whole.size()
                     ? QByteArray()
                     : whole.mid(match.capturedEnd()).toUtf8() + open;
        if (!steps[done].reply.isEmpty())
            replies.append(steps[done].reply);
        ++done;
    }
    if (window.size() > WINDOW)
        window = window.right(WINDOW);
    return replies;
}

QString Script::pattern() const
{
    return done < steps.size() ? steps[done].expected.pattern() : QString();
}
