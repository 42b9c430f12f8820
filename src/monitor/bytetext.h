// Received bytes as text for a screen or a file.
#pragma once

#include <QByteArray>

// Turns the direction of text, or is a control character of Unicode.
bool is_harmful(char32_t character);

// UTF-8 stays whole when it comes in pieces. What could harm a terminal is shown instead of
// obeyed:
//
//   kept      text; line feed, carriage return, tab, backspace; ESC [ ... with the endings m
//   (colour),
//             K (erase the line), C and D (move in the line)
//   \x1b      other control characters, and bytes that are no UTF-8, as escapes that can be sent
//   \u202e    characters that turn the direction of text, and control characters of Unicode
class ByteText
{
public:
    // `raw`: everything is kept as it came.
    explicit ByteText(bool raw = false)
        : raw(raw)
    {
    }

    void feed(const QByteArray& bytes, QByteArray& out);
    // Shows what a character or a sequence has begun with and nothing has ended.
    void finish(QByteArray& out);
    bool holds_back() const { return !held.isEmpty(); }
    // A sequence has changed the colours, so that whoever ends is to reset them.
    bool coloured() const { return colours; }

private:
    int take_special(const char* at, const char* end, QByteArray& out);
    int take_sequence(const char* at, const char* end, QByteArray& out);
    int take_character(const char* at, const char* end, QByteArray& out);

    const bool raw;
    bool colours = false;
    QByteArray held; // the beginning of a character or a sequence
};
