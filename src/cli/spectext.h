// A mistake in a text that a user wrote, with its place; and pieces of text that know theirs.
#pragma once

#include <QString>
#include <QVector>
#include <optional>

struct SpecError
{
    QString message;
    int column; // from 0
    int length; // at least 1; a place behind the end of the text has a column of its size
};

template <typename Value> struct Parsed
{
    Value value;
    std::optional<SpecError> error;
};

// A part of a longer text.
struct Piece
{
    QString text;
    int column = 0;

    Piece mid(int position, int length = -1) const;
    // The pieces between the separators; there is always at least one.
    QVector<Piece> split(QChar separator) const;
    bool is(const char* word) const; // case doesn't count
    SpecError error(const QString& message) const;
    SpecError error_behind(const QString& message) const;
};

// Decimal, or hexadecimal behind 0x; nothing outside least to most.
std::optional<qint64> number_in(const QString& text, qint64 least, qint64 most);

// The text, and under it a caret at the mistake's place, each line indented by two blanks.
QString pointed_at(const QString& text, const SpecError& error);
