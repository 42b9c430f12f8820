// The rows of the list of prepared strings, and how a settings file keeps them.
#pragma once

#include <QSettings>
#include <QString>
#include <functional>
#include <vector>

struct StringRow
{
    bool in_turn = false; // takes part in sending in turn
    QString alias;
    bool is_hex = false; // `value` is hexadecimal digits
    QString value;       // what is sent

    bool can_be_sent_in_turn() const { return in_turn && !value.isEmpty(); }
    bool operator==(const StringRow& other) const
    {
        return in_turn == other.in_turn && alias == other.alias && is_hex == other.is_hex &&
               value == other.value;
    }
};

// The rows that the file keeps. Where it claims more than is credible, those up to the last one
// that holds something.
std::vector<StringRow> string_rows_read(QSettings& settings);

// Whether the file keeps exactly these rows and claims no more.
bool string_rows_are_stored(QSettings& settings, const std::vector<StringRow>& rows);

// Writes into a file without rows. A row leaves out what is empty or false.
void string_rows_write(QSettings& settings, const std::vector<StringRow>& rows);

// The first row from `cursor` on, going round once, that qualifies, or -1. `cursor` ends up after
// the last row looked at.
int next_in_turn(int& cursor, int rows, const std::function<bool(int)>& qualifies);
