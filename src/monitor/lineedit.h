// A line that is typed, with the habits of readline, and the lines before it. No terminal is
// touched.
//
//   left right  Ctrl-B Ctrl-F      a character      Alt-B Alt-F, Ctrl-left Ctrl-right   a word
//   Home End    Ctrl-A Ctrl-E      the line's ends
//   Backspace   Ctrl-H             delete before    Delete, Ctrl-D     delete under the cursor
//   Ctrl-W      the word before    Alt-D            the word after
//   Ctrl-U      all before         Ctrl-K           all after          Ctrl-Y   what was cut
//   up down     Ctrl-P Ctrl-N      earlier and later lines
//   Ctrl-R      search for what is typed before it or after it; again: the line before
//   Enter       done               Ctrl-C Ctrl-G    given up; in a search, back to what was typed
#pragma once

#include <QString>
#include <QStringList>

// The last lines, oldest first, each once.
class History
{
public:
    static constexpr int MOST = 500;

    void add(const QString& line);
    const QStringList& lines() const { return kept; }

private:
    QStringList kept;
};

class LineEdit
{
public:
    enum class State { Editing, Done, GivenUp };

    explicit LineEdit(const History& history)
        : history(history)
    {
    }

    // Takes keys up to the end of the line; how many bytes it took.
    int take(const QByteArray& keys, int from);
    State state() const { return current; }
    const QString& text() const { return line; }
    int cursor() const { return at; }          // in `text`
    void go_on() { current = State::Editing; } // with the same line, after its end
    bool is_searching() const { return searching; }
    const QString& searched() const { return needle; }

private:
    void control(char code);
    // Whether the key is one of theirs.
    bool search_key(char code, bool searched);
    bool move_key(char code);
    bool change_key(char code);
    void sequence(const QByteArray& keys);
    void insert(const QString& text);
    void cut(int from, int to);
    int word_left() const;
    int word_right() const;
    void recall(int index);
    // From this line of the history backwards.
    void search(int index);
    int last_row() const { return int(history.lines().size()) - 1; }

    const History& history;
    QString line;
    int at = 0;
    State current = State::Editing;
    QByteArray pending; // of an escape sequence or a character
    QString yanked;
    int row = -1;     // in the history; -1 for the line that is typed
    QString own_line; // which is kept meanwhile
    QString needle;   // of the search
    bool searching = false;
};
