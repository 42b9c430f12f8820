// The terminal of a session: keys as they are typed, and its state given back at every end.
#pragma once

#include <QByteArray>
#include <QString>
#include <utility>

// One object a process.
class Screen
{
public:
    Screen();
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    // Keys come one by one, without echo and without meaning to the system, if stdin is a terminal.
    // Given back by the destructor, and before a signal ends the program. The prefix and q end a
    // write that waits for its reader.
    void take_keys(char prefix);
    bool has_keys() const { return keys; }
    // What was typed while a write waited; it comes before what stdin has.
    bool has_typed() const { return !typed.isEmpty(); }
    QByteArray take_typed() { return std::exchange(typed, {}); }
    // After others had the terminal.
    void retake();
    // stdout is a terminal.
    bool is_terminal() const { return output; }
    // In characters; 80 where it isn't known.
    int width() const;
    // False when stdout takes no more; its reader has gone, or its disk is full: error(). Waits for
    // a slow reader, but not for one that is stuck when the end is asked for.
    bool write(const QByteArray& bytes);
    QString error() const { return reason; }

private:
    bool has_room();
    void look_at_keys();

    const bool output;
    const bool file; // stdout
    bool keys = false;
    bool given_up = false;
    QByteArray quit; // the keys of it
    QByteArray typed;
    QString reason;
};

// The cells that the text takes on a terminal.
int cells_of(const QString& text);
