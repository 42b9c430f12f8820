// Why a command ends early. Thrown by the commands and what they call, caught in main.
#pragma once

#include <QJsonObject>
#include <QString>

// What the program ends with.
enum class ExitCode : int {
    Done = 0,
    Refused = 1,
    Usage = 2,
    Link = 3,
    NoAnswer = 4,
    BadAnswer = 5,
    File = 6,
    Interrupted = 130,
};

struct ExitCodeRow
{
    ExitCode code = ExitCode::Done;
    const char* name = nullptr; // in the JSON form of an error
    const char* meaning = nullptr;
};

constexpr ExitCodeRow EXIT_CODES[] = {
    {ExitCode::Done, "done", "All was done as asked."},
    {ExitCode::Refused, "refused",
     "The device answered and said no, or isn't as it should be; captures differ."},
    {ExitCode::Usage, "usage", "The command line is wrong; nothing was sent."},
    {ExitCode::Link, "link", "The link could not be opened, or was lost."},
    {ExitCode::NoAnswer, "no-answer", "Nothing came from the device in time."},
    {ExitCode::BadAnswer, "bad-answer", "Something came that is no answer to what was asked."},
    {ExitCode::File, "file", "A file could not be read or written, or is damaged."},
    {ExitCode::Interrupted, "interrupted",
     "Ctrl-C, a request to terminate, or a no to a question ended it."},
};

struct Failure
{
    ExitCode code = ExitCode::Refused;
    QString what;                    // what happened, to what
    QString advice;                  // what to do next; may be empty
    QJsonObject partial_result = {}; // what was found before
};

// As JSON has it.
QJsonObject error_object(const Failure& failure);

inline Failure usage_failure(const QString& what, const QString& advice = {})
{
    return {ExitCode::Usage, what, advice};
}
