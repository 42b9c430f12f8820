#include "slowrows.h"

#include <QStringList>
#include <algorithm>

namespace {

constexpr int TAB_STOP = 8;
constexpr int MOST_CHARACTERS_PER_COLUMN = 8;

enum class Kind { Narrow, Blank, Tab, Wide, Mark, LineEnd };

Kind kind_of(const QString& text, int at)
{
    const ushort c = text[at].unicode();
    if (c == ' ')
        return Kind::Blank;
    if (c == '\t')
        return Kind::Tab;
    if (c == QChar::LineSeparator)
        return Kind::LineEnd;
    if (c == 0x56FD || QChar::isHighSurrogate(c))
        return Kind::Wide;
    return c == 0x301 || QChar::isLowSurrogate(c) ? Kind::Mark : Kind::Narrow;
}

// A character with the marks that are joined to it.
struct Cluster
{
    int start;
    Kind kind;
};

std::vector<Cluster> clusters_of(const QString& text, int start, int end)
{
    std::vector<Cluster> clusters;
    for (int at = start; at < end; ++at) {
        const Kind kind = kind_of(text, at);
        const bool joins =
            kind == Kind::Mark && !clusters.empty() && clusters.back().kind != Kind::LineEnd;
        if (!joins)
            clusters.push_back({at, kind});
    }
    return clusters;
}

int column_behind(Kind kind, int column, int columns)
{
    if (kind == Kind::Tab)
        return column >= columns ? column
                                 : std::min(columns, column - column % TAB_STOP + TAB_STOP);
    const bool one_cell = kind == Kind::Narrow || kind == Kind::Blank;
    return column + (kind == Kind::Wide ? 2 : one_cell ? 1 : 0);
}

bool fits(const std::vector<Cluster>& clusters, size_t count, int columns)
{
    int column = 0;
    bool past_edge = false;
    for (size_t i = 0; i < count; ++i) {
        const Kind kind = clusters[i].kind;
        if (i > 0 && clusters[i - 1].kind == Kind::LineEnd)
            return false;
        if (past_edge && kind != Kind::LineEnd)
            return false;
        past_edge = (kind == Kind::Blank || kind == Kind::Tab) && column >= columns;
        column = column_behind(kind, column, columns);
        const bool has_ink = kind == Kind::Narrow || kind == Kind::Wide;
        if (has_ink && column > columns && i > 0)
            return false;
    }
    return true;
}

bool may_part(Kind before, Kind after)
{
    return before == Kind::Blank || before == Kind::Tab || before == Kind::Wide ||
           before == Kind::LineEnd || after == Kind::Wide;
}

int row_end(const QString& text, int start, int end, int columns)
{
    const int most = start + columns * MOST_CHARACTERS_PER_COLUMN;
    const int seen = std::min(end, most + 1);
    const std::vector<Cluster> clusters = clusters_of(text, start, seen);
    size_t count = clusters.size();
    while (!fits(clusters, count, columns))
        --count;
    const int full = count < clusters.size() ? clusters[count].start : seen;
    if (full >= most)
        return std::min(most, end);
    if (full == end)
        return end;
    for (size_t i = count; i > 0; --i)
        if (may_part(clusters[i - 1].kind, clusters[i].kind))
            return clusters[i].start;
    return full;
}

} // namespace

std::vector<SlowRow> slow_rows(const QString& text, int columns)
{
    std::vector<SlowRow> rows;
    for (int start = 0; start <= text.size();) {
        const int found = text.indexOf('\n', start);
        const int end = found < 0 ? text.size() : found;
        do {
            const int row = row_end(text, start, end, columns);
            rows.push_back({start, row});
            start = row;
        } while (start < end);
        start = end + 1;
    }
    return rows;
}

QString random_text(std::mt19937& random, int length, bool uneven)
{
    static const QStringList UNEVEN = {
        "\t", u8"\u56FD", u8"\U0001F600", u8"e\u0301", u8"\u0301", u8"\uFFFD",   "\x01",
        "\r", "\r\n",     u8"\u2028",     u8"\u2029",  u8"\u00A0", QChar(0xFDD0)};
    QString text;
    while (text.size() < length) {
        const unsigned kind = random() % 40;
        if (kind < 6)
            text += ' ';
        else if (kind == 6 && random() % 4 == 0)
            text += '\n';
        else if (kind < 12 && uneven)
            text += UNEVEN[int(random() % unsigned(UNEVEN.size()))];
        else
            text += QString(int(random() % 12), QChar('a' + char(random() % 26)));
    }
    return text;
}
