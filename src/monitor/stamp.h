// Time stamps in front of lines and frames, and rows of hexadecimal.
#pragma once

#include <QByteArray>
#include <cstdint>
#include <optional>

enum class StampKind { Off, Time, Delta, Iso };

constexpr std::int64_t NS_PER_US = 1'000;
constexpr std::int64_t NS_PER_MS = 1'000'000;
constexpr std::int64_t NS_PER_S = 1'000'000'000;

const char* name_of(StampKind kind); // "time", as in options
StampKind next(StampKind kind);
std::optional<StampKind> stamp_kind_named(const QByteArray& name);

// With a blank at the end; nothing for Off. Times are ns since 1970; `previous` is that of the
// stamp before.
//   time    12:34:56.789
//   delta   +0.001234          seconds since the stamp before, which is 0 for the first
//   iso     2026-11-25T12:34:56.789123+01:00
QByteArray stamp_text(StampKind kind, std::int64_t time_ns, std::optional<std::int64_t> previous);

constexpr int HEX_ROW_BYTES = 16;

// "41 54 0d 0a                                      AT..", of at most HEX_ROW_BYTES.
QByteArray hex_row(const QByteArray& bytes);
