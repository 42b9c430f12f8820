#include "tools/bootdialogue.h"

#include <QtEndian>
#include <algorithm>

namespace {

constexpr int NAME_OFFSET = BOOT_INFO_MIN;
constexpr std::uint8_t FLAG_HARD_INFO = 0x01;
constexpr int HARD_INFO_SHOWN = 4;

void append_u32(QByteArray& request, std::uint32_t value)
{
    const std::uint32_t wire = qToBigEndian(value);
    request.append(reinterpret_cast<const char*>(&wire), sizeof wire);
}

QString two_digits(int value, int base)
{
    return QStringLiteral("%1").arg(value, 2, base, QLatin1Char('0'));
}

} // namespace

QByteArray boot_verify_request(std::uint32_t crc, std::uint32_t offset, std::uint32_t size,
                               bool final)
{
    QByteArray request(1, char(BOOT_VERIFY));
    append_u32(request, offset);
    append_u32(request, size);
    append_u32(request, crc);
    return request.append(final ? '\1' : '\0');
}

QByteArray boot_write_request(const void* data, std::uint32_t offset, std::uint32_t n)
{
    QByteArray request;
    request.reserve(5 + int(n));
    request.append(char(BOOT_WRITE));
    append_u32(request, offset);
    return request.append(static_cast<const char*>(data), int(n));
}

DeviceInfo device_info(const std::uint8_t* record, int size)
{
    DeviceInfo info;
    info.in_boot = record[1] != 0;
    std::copy_n(record + 3, sizeof info.version, info.version);
    info.rom_page_size = qFromBigEndian<std::uint16_t>(record + 8);
    info.mtu = qFromBigEndian<std::uint16_t>(record + 10);

    int name_end = NAME_OFFSET;
    if (size > NAME_OFFSET) {
        name_end = int(std::find(record + NAME_OFFSET, record + size, 0) - record);
        info.name = QString::fromLatin1(reinterpret_cast<const char*>(record) + NAME_OFFSET,
                                        name_end - NAME_OFFSET);
    }
    const int hard_info_size = size - name_end - 1;
    if ((record[2] & FLAG_HARD_INFO) != 0 && hard_info_size >= 0) {
        info.hard_info = record + name_end + 1;
        info.hard_info_size = hard_info_size;
    }
    return info;
}

QString soft_info(const DeviceInfo& info)
{
    return QStringLiteral("%1 V%2.%3.%4%5%6 %7")
        .arg(info.name.value_or(QString()), QString::number(info.version[0]),
             two_digits(info.version[1], 10), two_digits(info.version[2], 10),
             two_digits(info.version[3], 10), two_digits(info.version[4], 10),
             info.in_boot ? QStringLiteral("BOOT") : QStringLiteral("APP"));
}

QString hard_info_text(const QString& text, const std::uint8_t* info, int size)
{
    QString shown[HARD_INFO_SHOWN];
    for (int i = 0; i < HARD_INFO_SHOWN; ++i)
        shown[i] = i < size ? two_digits(info[i], 16) : QStringLiteral("--");
    return text.arg(QString::number(size), shown[0], shown[1], shown[2], shown[3]);
}

bool firmware_fits(const QString& file_name, const QString& module_name)
{
    return module_name.contains(QLatin1String("boot")) ||
           file_name.startsWith(module_name + QLatin1Char('_'));
}
