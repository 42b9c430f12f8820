#include "monitor/script.h"

Script::Script(const QVector<ScriptStep>& steps, const std::optional<QRegularExpression>& until)
    : steps(steps)
    , until_given(until.has_value())
{
    if (until)
        this->steps.append({*until, {}});
}

QVector<QByteArray> Script::feed(const QByteArray& bytes)
{
    QVector<QByteArray> replies;
    if (done == steps.size())
        return replies;
    window += bytes;
    while (done < steps.size()) {
        const auto match = steps[done].expected.match(QString::fromUtf8(window));
        if (!match.hasMatch())
            break;
        window = QString::fromUtf8(window).mid(match.capturedEnd()).toUtf8();
        if (!steps[done].reply.isEmpty())
            replies.append(steps[done].reply);
        ++done;
    }
    if (window.size() > WINDOW)
        window = window.right(WINDOW);
    return replies;
}

QString Script::pattern() const
{
    return done < steps.size() ? steps[done].expected.pattern() : QString();
}
