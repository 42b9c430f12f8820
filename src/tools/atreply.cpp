#include "tools/atreply.h"

#include "checksum/hextext.h"

#include <charconv>
#include <cmath>

namespace {

constexpr int KEY_SIZE = 16;
constexpr int REPORT_HEAD = sizeof AT_DEVICE_REPORT - 1;
constexpr int LONGEST_REPORT = 1024; // far beyond a module's; bounds what a line without end keeps

bool is_space(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace

QList<QByteArray> at_fields(const QByteArray& reply, int count)
{
    if (reply.count(',') != count - 1)
        return {};
    return reply.split(',');
}

float at_float(const QByteArray& field)
{
    const char* text = field.constData();
    const char* end = text + field.size();
    while (text < end && is_space(*text))
        ++text;
    if (text < end && *text == '+')
        ++text;
    float value = 0;
    std::from_chars(text, end, value);
    return value;
}

std::uint16_t at_word(const QByteArray& field)
{
    const float value = at_float(field);
    if (!(value > 0)) // false for what isn't a number too
        return 0;
    return std::uint16_t(std::fmin(value, float(UINT16_MAX)));
}

std::optional<std::uint32_t> at_address(const QByteArray& reply)
{
    QByteArray digits = reply.trimmed();
    if (digits.startsWith("0x") || digits.startsWith("0X"))
        digits.remove(0, 2);
    std::uint32_t value = 0;
    const char* end = digits.constData() + digits.size();
    if (std::from_chars(digits.constData(), end, value, 16).ec != std::errc())
        return std::nullopt;
    return value;
}

QByteArray at_key(const QByteArray& reply)
{
    QByteArray key;
    int at = 0;
    while (key.size() < KEY_SIZE) {
        while (at < reply.size() && is_space(reply[at]))
            ++at;
        if (at + 1 >= reply.size())
            break;
        const int high = hex_digit(reply[at]);
        const int low = hex_digit(reply[at + 1]);
        if (high < 0 || (low < 0 && !is_space(reply[at + 1])))
            break;
        key.append(low < 0 ? char(high) : char(high << 4 | low));
        at += 2;
    }
    return key;
}

QStringList at_devices_take(QByteArray& text)
{
    QStringList devices;
    int begin = 0;
    for (int end = 0; end < text.size(); ++end) {
        if (text[end] != '\r' && text[end] != '\n')
            continue;
        const QByteArray line = text.mid(begin, end - begin);
        const int report = int(line.indexOf(AT_DEVICE_REPORT));
        if (report >= 0)
            devices.append(QString::fromLatin1(line.mid(report + REPORT_HEAD)));
        begin = end + 1;
    }
    text.remove(0, begin);
    const int report = int(text.indexOf(AT_DEVICE_REPORT));
    const int unfinished = report < 0 ? 0 : int(text.size()) - report;
    // A head may be cut too.
    const bool good = unfinished > 0 && unfinished <= LONGEST_REPORT;
    text = text.right(good ? unfinished : REPORT_HEAD - 1);
    return devices;
}
