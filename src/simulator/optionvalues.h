// The values of a parsed command line, each within its limits.
#pragma once

#include <QCommandLineParser>
#include <cstdint>

// Thrown for a value that doesn't fit, with a text for the user.
struct OptionMistake
{
    QString text;
};

class OptionValues
{
public:
    explicit OptionValues(const QCommandLineParser& parser)
        : parser(parser)
    {
    }

    std::int64_t integer(const char* name, std::int64_t least, std::int64_t most) const
    {
        bool ok = false;
        const std::int64_t value = parser.value(name).toLongLong(&ok);
        return in_range(name, ok, value, least, most);
    }

    double real(const char* name, double least, double most) const
    {
        bool ok = false;
        const double value = parser.value(name).toDouble(&ok);
        return in_range(name, ok, value, least, most);
    }

    bool has(const char* name) const { return parser.isSet(name); }
    QString text(const char* name) const { return parser.value(name); }
    QStringList texts(const char* name) const { return parser.values(name); }

private:
    static QString digits(std::int64_t number) { return QString::number(number); }
    static QString digits(double number) { return QString::number(number, 'g', 15); }

    template <typename Number>
    Number in_range(const char* name, bool ok, Number value, Number least, Number most) const
    {
        if (!ok || !(value >= least && value <= most))
            throw OptionMistake{
                QStringLiteral("--%1 %2: a number from %3 to %4 is needed")
                    .arg(QLatin1String(name), parser.value(name), digits(least), digits(most))};
        return value;
    }

    const QCommandLineParser& parser;
};
