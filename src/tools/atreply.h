// What the Dorv module's replies say: parsing only, over bytes that may be anything.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <cstdint>
#include <optional>

// The fields of a reply that has exactly count of them, split by commas; else an empty list.
QList<QByteArray> at_fields(const QByteArray& reply, int count);

// The number that a field begins with, after white space, whatever the locale; 0 when there is
// none.
float at_float(const QByteArray& field);
// As at_float without the fraction, held between 0 and 65535.
std::uint16_t at_word(const QByteArray& field);

// The base-16 number of at most 32 bits that a reply begins with, after white space and with or
// without a leading 0x; what follows its digits doesn't count. None for no digit, or too many.
std::optional<std::uint32_t> at_address(const QByteArray& reply);

// The key that a reply spells, at most 16 bytes. White space before a byte is skipped; a digit
// with white space after it is a byte by itself; a single digit at the end is dropped; any other
// character ends the key.
QByteArray at_key(const QByteArray& reply);

// Begins each report of a device.
constexpr char AT_DEVICE_REPORT[] = "+devfound,";

// What follows "+devfound," in each line of the text that has ended. These lines are removed, and
// what can't become a report any more: what stays goes before what comes next.
QStringList at_devices_take(QByteArray& text);
