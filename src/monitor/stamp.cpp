#include "monitor/stamp.h"

#include <QDateTime>
#include <algorithm>
#include <iterator>

namespace {
constexpr const char* NAMES[] = {"off", "time", "delta", "iso"};
constexpr int KINDS = int(std::size(NAMES));

QByteArray delta_text(std::int64_t ns)
{
    const auto us = std::abs(ns) / NS_PER_US;
    const QByteArray fraction = QByteArray::number(qlonglong(us % 1'000'000));
    return (ns < 0 ? "-" : "+") + QByteArray::number(qlonglong(us / 1'000'000)) + '.' +
           fraction.rightJustified(6, '0') + ' ';
}

QByteArray iso_text(const QDateTime& time, std::int64_t time_ns)
{
    const int offset = time.offsetFromUtc() / 60;
    const QByteArray us = QByteArray::number(qlonglong(time_ns % NS_PER_S / NS_PER_US));
    const auto two = [](int number) { return QByteArray::number(number).rightJustified(2, '0'); };
    return time.toString("yyyy-MM-ddTHH:mm:ss.").toLatin1() + us.rightJustified(6, '0') +
           (offset < 0 ? '-' : '+') + two(std::abs(offset) / 60) + ':' +
           two(std::abs(offset) % 60) + ' ';
}
} // namespace

const char* name_of(StampKind kind)
{
    return NAMES[int(kind)];
}

StampKind next(StampKind kind)
{
    return StampKind((int(kind) + 1) % KINDS);
}

std::optional<StampKind> stamp_kind_named(const QByteArray& name)
{
    const auto* const found = std::find(std::begin(NAMES), std::end(NAMES), name);
    if (found == std::end(NAMES))
        return std::nullopt;
    return StampKind(found - std::begin(NAMES));
}

QByteArray stamp_text(StampKind kind, std::int64_t time_ns, std::optional<std::int64_t> previous)
{
    if (kind == StampKind::Off)
        return {};
    if (kind == StampKind::Delta)
        return delta_text(time_ns - previous.value_or(time_ns));
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(time_ns / NS_PER_MS);
    if (kind == StampKind::Time)
        return time.toString("HH:mm:ss.zzz ").toLatin1();
    return iso_text(time, time_ns);
}

QByteArray hex_row(const QByteArray& bytes)
{
    const QByteArray digits = bytes.toHex(' ');
    QByteArray text = bytes;
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < 0x20 || c > 0x7e; }, '.');
    return digits.leftJustified(HEX_ROW_BYTES * 3 - 1) + "  " + text;
}
