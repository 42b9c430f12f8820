#include "terminal/stringrow.h"

#include "terminal/settingkeys.h"

#include <algorithm>

namespace {

// A file may claim any number of rows. Beyond this many, only those that hold something are
// believed.
constexpr int CREDIBLE_ROWS = 100000;

// The last row of the array that has a key, counted from 1.
int last_row_with_keys(QSettings& settings)
{
    int last = 0;
    settings.beginGroup(STRINGS);
    for (const QString& row : settings.childGroups())
        last = std::max(last, row.toInt());
    settings.endGroup();
    return last;
}

StringRow row_read(const QSettings& settings)
{
    return {IN_TURN.read(settings), ALIAS.read(settings), IS_HEX.read(settings),
            VALUE.read(settings)};
}

} // namespace

std::vector<StringRow> string_rows_read(QSettings& settings)
{
    int count = settings.beginReadArray(STRINGS);
    settings.endArray();
    if (count > CREDIBLE_ROWS)
        count = std::min(CREDIBLE_ROWS, last_row_with_keys(settings));

    std::vector<StringRow> rows;
    settings.beginReadArray(STRINGS);
    for (int row = 0; row < count; ++row) {
        settings.setArrayIndex(row);
        rows.push_back(row_read(settings));
    }
    settings.endArray();
    return rows;
}

bool string_rows_are_stored(QSettings& settings, const std::vector<StringRow>& rows)
{
    bool same = settings.beginReadArray(STRINGS) == int(rows.size());
    for (int row = 0; same && row < int(rows.size()); ++row) {
        settings.setArrayIndex(row);
        same = row_read(settings) == rows[std::size_t(row)];
    }
    settings.endArray();
    return same;
}

void string_rows_write(QSettings& settings, const std::vector<StringRow>& rows)
{
    settings.beginWriteArray(STRINGS, -1);
    int index = 0;
    for (const StringRow& row : rows) {
        settings.setArrayIndex(index++);
        if (row.in_turn)
            IN_TURN.write(settings, true);
        if (!row.alias.isEmpty())
            ALIAS.write(settings, row.alias);
        if (row.is_hex)
            IS_HEX.write(settings, true);
        if (!row.value.isEmpty())
            VALUE.write(settings, row.value);
    }
    settings.endArray();
}

int next_in_turn(int& cursor, int rows, const std::function<bool(int)>& qualifies)
{
    for (int look = 0; look < rows; ++look) {
        const int row = cursor < rows ? cursor : 0;
        cursor = row + 1;
        if (qualifies(row))
            return row;
    }
    return -1;
}
