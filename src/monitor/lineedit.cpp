#include "monitor/lineedit.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace {
constexpr char ESCAPE = 0x1b;
constexpr char ctrl(char letter)
{
    return char(letter & 0x1f);
}

bool is_final(char c)
{
    return c >= 0x40 && c <= 0x7e && c != '[';
}

// Whether these bytes are a whole escape sequence: ESC and a letter, or ESC [ or ESC O and on to
// one.
bool is_whole(const QByteArray& keys)
{
    if (keys.size() < 2)
        return false;
    if (keys[1] == '[' || keys[1] == 'O')
        return keys.size() > 2 && is_final(keys[keys.size() - 1]);
    return true;
}

int character_size(char first)
{
    const auto byte = std::uint8_t(first);
    return byte < 0xc0 ? 1 : byte < 0xe0 ? 2 : byte < 0xf0 ? 3 : 4;
}
} // namespace

void History::add(const QString& line)
{
    if (line.isEmpty())
        return;
    kept.removeAll(line);
    kept.append(line);
    if (kept.size() > MOST)
        kept.removeFirst();
}

int LineEdit::take(const QByteArray& keys, int from)
{
    int taken = from;
    while (taken < keys.size() && current == State::Editing) {
        pending += keys[taken++];
        if (pending[0] == ESCAPE) {
            if (is_whole(pending))
                sequence(std::exchange(pending, {}));
        } else if (std::uint8_t(pending[0]) < 0x20 || pending.at(0) == 0x7f) {
            control(std::exchange(pending, {})[0]);
        } else if (pending.size() >= character_size(pending[0])) {
            insert(QString::fromUtf8(std::exchange(pending, {})));
        }
    }
    return taken - from;
}

void LineEdit::control(char code)
{
    const bool searched = std::exchange(searching, false);
    if (search_key(code, searched) || move_key(code) || change_key(code))
        return;
    if (code == '\r' || code == '\n')
        current = State::Done;
    else if (code == ctrl('C') || code == ctrl('G'))
        current = State::GivenUp;
}

bool LineEdit::search_key(char code, bool searched)
{
    if (code == ctrl('R')) {
        if (!searched)
            needle = line;
        searching = true;
        search(row < 0 ? last_row() : row - 1);
        return true;
    }
    if (searched && (code == ctrl('H') || code == 0x7f)) {
        searching = true;
        needle.chop(1);
        search(last_row());
        return true;
    }
    if (searched && row >= 0 && (code == ctrl('C') || code == ctrl('G'))) {
        recall(last_row() + 1);
        return true;
    }
    return false;
}

bool LineEdit::move_key(char code)
{
    switch (code) {
    case ctrl('A'):
        at = 0;
        return true;
    case ctrl('E'):
        at = int(line.size());
        return true;
    case ctrl('B'):
        at = std::max(0, at - 1);
        return true;
    case ctrl('F'):
        at = std::min(int(line.size()), at + 1);
        return true;
    case ctrl('P'):
        recall(row < 0 ? last_row() : row - 1);
        return true;
    case ctrl('N'):
        recall(row < 0 ? -1 : row + 1);
        return true;
    default:
        return false;
    }
}

bool LineEdit::change_key(char code)
{
    switch (code) {
    case ctrl('H'):
    case 0x7f:
        line.remove(std::max(0, at - 1), at > 0 ? 1 : 0);
        at = std::max(0, at - 1);
        return true;
    case ctrl('D'):
        line.remove(at, 1);
        return true;
    case ctrl('W'):
        cut(word_left(), at);
        return true;
    case ctrl('U'):
        cut(0, at);
        return true;
    case ctrl('K'):
        cut(at, int(line.size()));
        return true;
    case ctrl('Y'):
        insert(yanked);
        return true;
    default:
        return false;
    }
}

void LineEdit::sequence(const QByteArray& keys)
{
    static constexpr struct
    {
        const char* keys;
        char same_as;
    } ROWS[] = {
        {"\x1b[A", ctrl('P')},  {"\x1b[B", ctrl('N')},  {"\x1b[C", ctrl('F')},
        {"\x1b[D", ctrl('B')},  {"\x1b[H", ctrl('A')},  {"\x1b[F", ctrl('E')},
        {"\x1bOA", ctrl('P')},  {"\x1bOB", ctrl('N')},  {"\x1bOC", ctrl('F')},
        {"\x1bOD", ctrl('B')},  {"\x1bOH", ctrl('A')},  {"\x1bOF", ctrl('E')},
        {"\x1b[1~", ctrl('A')}, {"\x1b[4~", ctrl('E')}, {"\x1b[7~", ctrl('A')},
        {"\x1b[8~", ctrl('E')}, {"\x1b[3~", ctrl('D')},
    };
    for (const auto& row : ROWS)
        if (keys == row.keys) {
            control(row.same_as);
            return;
        }
    searching = false;
    if (keys == "\x1b"
                "b" ||
        keys == "\x1b[1;5D")
        at = word_left();
    else if (keys == "\x1b"
                     "f" ||
             keys == "\x1b[1;5C")
        at = word_right();
    else if (keys == "\x1b"
                     "d")
        cut(at, word_right());
}

void LineEdit::insert(const QString& text)
{
    if (searching) {
        needle += text;
        search(row < 0 ? last_row() : row);
        return;
    }
    line.insert(at, text);
    at += int(text.size());
}

void LineEdit::cut(int from, int to)
{
    if (from >= to)
        return;
    yanked = line.mid(from, to - from);
    line.remove(from, to - from);
    at = from;
}

int LineEdit::word_left() const
{
    int left = at;
    while (left > 0 && line[left - 1].isSpace())
        --left;
    while (left > 0 && !line[left - 1].isSpace())
        --left;
    return left;
}

int LineEdit::word_right() const
{
    int right = at;
    while (right < line.size() && line[right].isSpace())
        ++right;
    while (right < line.size() && !line[right].isSpace())
        ++right;
    return right;
}

// Past the last line of the history is the one that is typed.
void LineEdit::recall(int index)
{
    const int count = int(history.lines().size());
    if (index < 0 || index > count || count == 0)
        return;
    if (row < 0)
        own_line = line;
    row = index == count ? -1 : index;
    line = row < 0 ? own_line : history.lines()[row];
    at = int(line.size());
}

void LineEdit::search(int index)
{
    for (int i = needle.isEmpty() ? -1 : index; i >= 0; --i)
        if (history.lines()[i].contains(needle)) {
            recall(i);
            return;
        }
}
