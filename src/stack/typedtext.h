// Texts that a user typed: their parts, what these mean, and where a mistake is.
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QVector>
#include <cstdint>
#include <optional>

// The context of what these functions say of mistakes. A program without a catalogue says it in
// English.
struct StackText
{
    Q_DECLARE_TR_FUNCTIONS(StackText)
};

// A mistake in a text. Thrown by the functions that parse one.
struct TextError
{
    QString message;
    int column = 0; // from 0
    int length = 1; // at least 1; a place after the end of the text has a column of its size
};

// A text, or a part of a longer one.
struct Piece
{
    Piece(const QString& text = {}, int column = 0)
        : text(text)
        , column(column)
    {
    }

    QString text;
    int column = 0; // in the longer text

    Piece mid(int position, int length = -1) const;
    // The pieces between the separators; there is always at least one.
    QVector<Piece> split(QChar separator) const;
    bool is(const char* word) const; // in upper or lower case
    TextError error(const QString& message) const;
    TextError error_after(const QString& message) const;
};

// A decimal number, or a hexadecimal one that begins with 0x; none outside least to most.
std::optional<std::int64_t> number_in(const QString& text, std::int64_t least, std::int64_t most);

// Pairs of hexadecimal digits, with blanks, colons or nothing between. Throws TextError.
QByteArray parse_hex_bytes(const Piece& piece);
// The bytes as parse_hex_bytes takes them; "-" for none.
QString shown(const QByteArray& bytes);
// In hexadecimal; text, as in AT commands, as text too.
QString shown_both(const QByteArray& bytes);

// The text, and under it a caret at the mistake's place, each line indented by two blanks.
QString pointed_at(const QString& text, const TextError& error);
