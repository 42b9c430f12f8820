// What a script waits for: pairs of an answer and a reply, in turn, and then the end.
#pragma once

#include <QByteArray>
#include <QRegularExpression>
#include <QVector>
#include <optional>

struct ScriptStep
{
    QRegularExpression expected;
    QByteArray reply; // may be empty
};

// A pattern fits as soon as what has come so far fits; the next one is looked for after it.
class Script
{
public:
    // So much of what came is kept to look in. Longer answers fit no pattern.
    static constexpr int WINDOW = 16 * 1024;

    Script() = default;
    Script(const QVector<ScriptStep>& steps, const std::optional<QRegularExpression>& until);

    // The replies that are due now.
    QVector<QByteArray> feed(const QByteArray& bytes);
    bool has_goal() const { return !steps.isEmpty(); }
    bool reached() const { return has_goal() && done == steps.size(); }
    bool has_until() const { return until_given; }
    // What it waits for.
    QString pattern() const;

private:
    QVector<ScriptStep> steps; // `until` is the last, without a reply
    bool until_given = false;
    int done = 0;
    QByteArray window;
};
