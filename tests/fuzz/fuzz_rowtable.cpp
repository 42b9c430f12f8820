// The grid of received text under any text and any change: each operation is a byte, and what it
// takes behind it.

#include "fuzzing.h"
#include "rowtable.h"

#include <utility>

namespace {

using Rows = std::vector<std::pair<int, int>>;

Rows rows_of(const RowTable& table)
{
    Rows rows;
    int end = 0;
    for (int row = 0; row < table.row_count(); ++row) {
        const int start = table.row_start(row);
        require(start == end || start == end + 1); // a paragraph's separator lies between
        end = table.row_end(row);
        require(start <= end && table.row_of(start) == row);
        // A wide character may be all of a row of one column, and a blank stand past the edge.
        require(table.column_of(row, end) <= table.columns() + 2);
        rows.emplace_back(start, end);
    }
    require(end == table.length());
    return rows;
}

void change(RowTable& table, int operation, int argument, const QString& text)
{
    switch (operation % 8) {
    case 0:
        return table.set_columns(1 + argument % 100);
    case 1:
        return table.drop_front(argument % (table.length() + 1));
    case 2:
        return table.drop_from(table.length() - argument % (table.length() + 1));
    case 3:
        return table.append_paragraph_end();
    default:
        return table.append(text.repeated(1 + argument / 32));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    RowTable table(20);
    for (int at = 0; at + 3 <= bytes.size() && table.length() < 20000;) {
        const int length = quint8(bytes[at + 2]) % 64;
        const QByteArray text = bytes.mid(at + 3, length);
        // Half of the texts are any UTF-16, halves of surrogate pairs included.
        change(table, quint8(bytes[at]), quint8(bytes[at + 1]),
               length % 2 == 0
                   ? QString::fromUtf8(text)
                   : QString(reinterpret_cast<const QChar*>(text.constData()), text.size() / 2));
        at += 3 + text.size();

        // Row by row as it grew, and all at once for a new width, give the same.
        const Rows rows = rows_of(table);
        const int columns = table.columns();
        table.set_columns(columns + 1);
        rows_of(table);
        table.set_columns(columns);
        require(rows_of(table) == rows);
    }
    return 0;
}
