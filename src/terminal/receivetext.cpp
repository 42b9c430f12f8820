#include "terminal/receivetext.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr int MS_PER_DAY = 24 * 60 * 60 * 1000;
constexpr int LONGEST_CHARACTER = 4; // bytes, in UTF-8

int elapsed_ms(const QTime& since, const QTime& now)
{
    const int ms = since.msecsTo(now);
    return ms < 0 ? ms + MS_PER_DAY : ms; // past midnight
}

QString time_stamp(const QTime& time)
{
    return time.toString("[hh:mm:ss.zzz] ");
}

QByteArray hex_dump(const QByteArray& data)
{
    constexpr char DIGITS[] = "0123456789ABCDEF";
    QByteArray text(data.size() * 3, Qt::Uninitialized);
    char* out = text.data();
    for (const char c : data) {
        const auto byte = std::uint8_t(c);
        *out++ = DIGITS[byte >> 4];
        *out++ = DIGITS[byte & 0x0F];
        *out++ = ' ';
    }
    return text;
}

bool goes_on(char byte)
{
    return (std::uint8_t(byte) & 0xC0) == 0x80;
}

int length_by_first(char byte)
{
    const auto first = std::uint8_t(byte);
    return first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF8 ? 4 : 1;
}

bool local_is_utf8()
{
    return QString::fromLocal8Bit("\xC2\xB7") == QChar(0xB7);
}

// How many bytes at the end the next chunk may complete.
int cut_length(const QByteArray& bytes)
{
    if (bytes.endsWith('\r'))
        return 1;
    const int most = std::min(int(bytes.size()), LONGEST_CHARACTER - 1);
    for (int count = 1; count <= most; ++count) {
        const char byte = bytes[bytes.size() - count];
        if (!goes_on(byte))
            return length_by_first(byte) > count && local_is_utf8() ? count : 0;
    }
    return 0;
}

} // namespace

ChunkText chunk_text(const QByteArray& chunk, const ReceiveOptions& options, const QTime& last,
                     const QTime& now, bool line_open)
{
    ChunkText text = {QString(), options.hex_display ? hex_dump(chunk) : chunk};
    if (elapsed_ms(last, now) <= options.frame_interval)
        return text;
    if (options.frame_mode && line_open)
        text.prefix = "\n";
    if (options.display_time)
        text.prefix += time_stamp(now);
    return text;
}

QString sent_line(const QString& typed, const QTime& stamp, bool line_open)
{
    QString line = line_open ? "\n" : "";
    if (!stamp.isNull())
        line += time_stamp(stamp);
    // Up to the first zero byte.
    return line + QString::fromLatin1(typed.toLatin1().constData());
}

TextStep CutText::next(const QByteArray& chunk)
{
    TextStep step;
    if (chunk.isEmpty())
        return step;
    const int zero = int(chunk.indexOf('\0'));
    QByteArray bytes =
        QByteArray::fromRawData(chunk.constData(), zero < 0 ? int(chunk.size()) : zero);
    const bool mends_character =
        !cut.isEmpty() && cut != "\r" && !bytes.isEmpty() && goes_on(bytes.at(0));
    if (mends_character) {
        step.replaced = int(QString::fromLocal8Bit(cut).size());
        bytes.prepend(cut);
    }
    // With the size, as the overload for a QByteArray searches for a zero byte once more.
    step.text = QString::fromLocal8Bit(bytes.constData(), int(bytes.size()));
    if (cut == "\r" && bytes.startsWith('\n'))
        step.text.remove(0, 1);
    // What a zero byte hides comes between this chunk and the next.
    const int length = zero < 0 ? cut_length(bytes) : 0;
    cut = QByteArray(bytes.constData() + bytes.size() - length, length); // a copy: `bytes` is none
    return step;
}
