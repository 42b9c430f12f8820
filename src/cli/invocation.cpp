#include "cli/command.h"

#include "cli/failure.h"
#include "cli/spectext.h"

Invocation::Invocation(const Command& command, const QCommandLineParser& parser,
                       QStringList arguments, Console& console, Interrupts& interrupts)
    : console(console)
    , interrupts(interrupts)
    , command(command)
    , parser(parser)
    , arguments(std::move(arguments))
{
}

QString Invocation::argument(int index, const QString& name) const
{
    if (index >= arguments.size())
        throw usage_failure(name + " is missing",
                            "`tarnwickctl " + command.name + " --help` tells more.");
    return arguments[index];
}

void Invocation::expect_at_most(int count) const
{
    if (arguments.size() > count)
        throw usage_failure("unexpected: " + arguments.mid(count).join(' '),
                            "Words with blanks in them need quotation marks.");
}

bool Invocation::takes_frame() const
{
    return command.needs >= Needs::StackOrNothing;
}

bool Invocation::has(const char* option) const
{
    return parser.isSet(option);
}

QString Invocation::text(const char* option) const
{
    return parser.value(option);
}

QStringList Invocation::texts(const char* option) const
{
    return parser.values(option);
}

qint64 Invocation::number(const char* option, qint64 least, qint64 most) const
{
    const auto value = number_in(text(option), least, most);
    if (!value)
        throw usage_failure(QStringLiteral("--%1 %2: a number from %3 to %4 is needed")
                                .arg(QLatin1String(option), text(option), QString::number(least),
                                     QString::number(most)));
    return *value;
}
