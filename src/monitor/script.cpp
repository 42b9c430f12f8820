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
        // With its size, or a NUL would end it.
        const QString text = QString::fromUtf8(window.constData(), int(window.size()));
        const auto match = steps[done].expected.match(text);
        if (!match.hasMatch())
            break;
        window = text.mid(match.capturedEnd()).toUtf8();
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
