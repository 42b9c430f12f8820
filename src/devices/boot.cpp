#include "devices/boot.h"

#include "checksum/crc.h"
#include "devices/bigendian.h"

#include <QtEndian>

namespace {
enum Command : char {
    INFORMATION = 'a',
    ENTER_BOOT = 'b',
    REBOOT = 'c',
    CHECK = 'd',
    WRITE = 'e',
};
constexpr int CHECK_SIZE = 14;
constexpr int WRITE_HEADER_SIZE = 5;
constexpr char YES = 0;
constexpr char NO = 1;

std::uint32_t number_at(const QByteArray& bytes, int place)
{
    return qFromBigEndian<std::uint32_t>(bytes.constData() + place);
}
} // namespace

Boot::Boot(const BootSettings& settings, Journal journal)
    : settings(settings)
    , journal(std::move(journal))
    , rom(settings.image, settings.rom_size)
    , in_boot(settings.in_boot)
    , application_good(!settings.in_boot)
{
}

int Boot::request_size(const QByteArray& heard, bool silence) const
{
    return silence || settings.framing.surely_whole(heard) ? int(heard.size()) : 0;
}

Answer Boot::answer(const QByteArray& request)
{
    const std::optional<QByteArray> payload = settings.framing.unwrap(request);
    if (!payload || payload->isEmpty()) {
        tell("not a frame for this module");
        return {};
    }
    const char command = payload->at(0);
    const int size = int(payload->size());
    if (command == INFORMATION && size == 1)
        return {{{settings.framing.wrap(information())}}};
    if (command == ENTER_BOOT && size == 1) {
        tell("enters its boot code");
        stay_in_boot = true;
        return {{}, true};
    }
    if (in_boot && command == REBOOT && size == 1) {
        tell("reboots");
        return {{}, true};
    }
    if (in_boot && command == CHECK && size == CHECK_SIZE)
        return {{{settings.framing.wrap(check(*payload))}}};
    if (in_boot && command == WRITE && size >= WRITE_HEADER_SIZE)
        return {{{settings.framing.wrap(write(*payload))}}};
    tell(in_boot ? "not a request that the boot code knows"
                 : "not a request that the application knows");
    return {};
}

void Boot::restart()
{
    in_boot = stay_in_boot || !application_good;
    stay_in_boot = false;
    tell(in_boot ? "the boot code runs" : "the application runs");
}

//   offset  size  field
//   0       1     'a'
//   1       1     0: the application runs, 1: the boot code
//   2       1     bit 0: hard info follows the name
//   3       5     version
//   8       2     page, bytes
//   10      2     MTU, bytes
//   12      L+1   name and a NUL; left out when there is no name
//   13+L          hard info
QByteArray Boot::information() const
{
    const bool hard = !settings.hard_info.isEmpty();
    QByteArray record;
    record += INFORMATION;
    record += char(in_boot);
    record += char(hard);
    for (std::uint8_t part : settings.version)
        record += char(part);
    record += big_endian(settings.page) + big_endian(settings.mtu);
    if (!settings.name.isEmpty() || hard)
        record += settings.name + '\0' + settings.hard_info;
    return record;
}

QByteArray Boot::check(const QByteArray& request)
{
    const std::uint32_t offset = number_at(request, 1);
    const std::uint32_t size = number_at(request, 5);
    const bool final = request.at(13) != 0;
    bool same = std::uint64_t(offset) + size <= std::uint64_t(rom.capacity());
    if (same) {
        const QByteArray block = rom.block(int(offset), int(size));
        same = crc32(block.constData(), size, 0xFFFFFFFF) == number_at(request, 9);
    }
    if (same && final && offset == 0) {
        rom.set_size(int(size));
        application_good = true;
    }
    tell(QStringLiteral("%1 of %2 bytes at %3: %4")
             .arg(final ? "last check" : "check")
             .arg(size)
             .arg(offset)
             .arg(same ? "same" : "different"));
    return QByteArray(1, CHECK) + (same ? YES : NO);
}

QByteArray Boot::write(const QByteArray& request)
{
    const std::uint32_t offset = number_at(request, 1);
    const QByteArray payload = request.mid(WRITE_HEADER_SIZE);
    const std::uint64_t end = std::uint64_t(offset) + std::uint64_t(payload.size());
    QString refusal;
    if (payload.isEmpty())
        refusal = "refused: nothing to write";
    else if (payload.size() > settings.mtu)
        refusal = QStringLiteral("refused: more than the MTU of %1 bytes").arg(settings.mtu);
    else if (end > std::uint64_t(rom.capacity()))
        refusal = QStringLiteral("refused: beyond the memory of %1 bytes").arg(rom.capacity());
    if (refusal.isEmpty()) {
        application_good = false;
        rom.write(int(offset), payload);
    }
    tell(QStringLiteral("%1 bytes at %2: %3")
             .arg(payload.size())
             .arg(offset)
             .arg(refusal.isEmpty() ? "written" : refusal));
    return QByteArray(1, WRITE) + (refusal.isEmpty() ? YES : NO);
}

void Boot::tell(const QString& text) const
{
    if (journal)
        journal(text);
}
