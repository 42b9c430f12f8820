// The keys of a session: what is sent as typed, and the commands after the prefix key.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>
#include <optional>

enum class KeyAction {
    Quit,
    Help,
    Break,
    ToggleDtr,
    ToggleRts,
    ShowLines,
    HexView,
    Stamps,
    Echo,
    Ending,
    SendFile,
    SendHex,
    Statistics,
    Clear,
    Strings,
};

struct KeyRow
{
    char key;
    KeyAction action;
    const char* meaning;
};

constexpr KeyRow KEYS[] = {
    {'q', KeyAction::Quit, "quit"},
    {'?', KeyAction::Help, "this list"},
    {'b', KeyAction::Break, "send a break"},
    {'d', KeyAction::ToggleDtr, "DTR on or off"},
    {'r', KeyAction::ToggleRts, "RTS on or off"},
    {'l', KeyAction::ShowLines, "show the control lines"},
    {'h', KeyAction::HexView, "hexadecimal view on or off"},
    {'t', KeyAction::Stamps, "time stamps: off, time, delta, ISO 8601"},
    {'e', KeyAction::Echo, "local echo on or off"},
    {'n', KeyAction::Ending, "line ending: CR, LF, CRLF, none"},
    {'s', KeyAction::SendFile, "send a file"},
    {'x', KeyAction::SendHex, "send bytes in hexadecimal"},
    {'i', KeyAction::Statistics, "statistics"},
    {'c', KeyAction::Clear, "clear the screen"},
    {'/', KeyAction::Strings, "send one of the last strings again"},
};

// Bytes to send, or an action, or a key after the prefix that means nothing.
struct KeyEvent
{
    QByteArray bytes;
    std::optional<KeyAction> action;
    char unknown = 0;
};

// The state is whether the prefix was the last key. After it: the prefix again sends the prefix's
// own byte; a letter, in lower or upper case or with Ctrl, is a command. Anything else is typed.
class KeyReader
{
public:
    static constexpr char CTRL_T = 0x14;

    explicit KeyReader(char prefix = CTRL_T)
        : prefix(prefix)
    {
    }

    // Takes keys up to the first action, which may change what the keys after it are for. How many
    // it took.
    int take(const QByteArray& keys, int from, KeyEvent& event);

private:
    const char prefix;
    bool after_prefix = false;
};

// "Ctrl-T"
QString shown_key(char control);
// The table for the screen.
QString key_help(char prefix);
