#include "capture/pcapngoptions.h"

namespace {

constexpr std::uint16_t END = 0;
constexpr int HEAD = 4;

int padded(int size)
{
    return (size + 3) & ~3;
}

void append_number(QByteArray& bytes, std::uint16_t number)
{
    const std::uint16_t little = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
}

// At most VALUE_MAX bytes of UTF-8, whole characters.
QByteArray cut_utf8(const QString& text)
{
    QByteArray bytes = text.toUtf8();
    if (bytes.size() <= PcapngOptions::VALUE_MAX)
        return bytes;
    int size = PcapngOptions::VALUE_MAX;
    while ((bytes[size] & 0xC0) == 0x80) // in the middle of a character
        --size;
    return bytes.left(size);
}

} // namespace

void PcapngOptions::add(std::uint16_t code, const QByteArray& value)
{
    options.append({code, value});
}

void PcapngOptions::add_text(std::uint16_t code, const QString& text)
{
    if (!text.isEmpty())
        add(code, cut_utf8(text));
}

void PcapngOptions::add_texts(std::uint16_t code, const QStringList& texts)
{
    for (const QString& text : texts)
        add_text(code, text);
}

QByteArray PcapngOptions::build() const
{
    QByteArray bytes;
    for (const Option& option : options) {
        append_number(bytes, option.code);
        append_number(bytes, std::uint16_t(option.value.size()));
        bytes.append(option.value);
        bytes.append(padded(int(option.value.size())) - int(option.value.size()), '\0');
    }
    if (!options.isEmpty())
        bytes.append(HEAD, '\0'); // code END of length 0
    return bytes;
}

PcapngParsed<PcapngOptions> PcapngOptions::parse(const QByteArray& bytes, PcapngOrder order)
{
    PcapngOptions parsed;
    parsed.order = order;
    const PcapngFields fields = {bytes, order};
    int at = 0;
    while (at + HEAD <= bytes.size()) {
        const std::uint16_t code = fields.u16(at);
        const int size = fields.u16(at + 2);
        at += HEAD;
        if (code == END)
            return {parsed, {}};
        if (size > int(bytes.size()) - at)
            return {std::nullopt, "an option is longer than its block"};
        parsed.add(code, bytes.mid(at, size));
        at += padded(size);
    }
    return {parsed, {}};
}

QVector<QByteArray> PcapngOptions::values(std::uint16_t code) const
{
    QVector<QByteArray> found;
    for (const Option& option : options)
        if (option.code == code)
            found.append(option.value);
    return found;
}

QString PcapngOptions::text(std::uint16_t code) const
{
    return texts(code).value(0);
}

// A text ends at a zero, whatever the version of Qt makes of one.
QStringList PcapngOptions::texts(std::uint16_t code) const
{
    QStringList texts;
    for (const QByteArray& value : values(code))
        texts.append(
            QString::fromUtf8(value.constData(), int(qstrnlen(value, uint(value.size())))));
    return texts;
}
