// Bytes as people type them: pairs of hexadecimal digits, with blanks, colons or nothing between.
#pragma once

#include "cli/spectext.h"

#include <QByteArray>

Parsed<QByteArray> parse_hex_bytes(const QString& text);

// The bytes as hex_text shows them; "-" for none.
QString shown(const QByteArray& bytes);
