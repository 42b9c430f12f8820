// What a link, framer or tool has logged.
#pragma once

#include <QSignalSpy>
#include <QStringList>

// The lines since the last call.
inline QStringList lines(QSignalSpy& log)
{
    QStringList texts;
    while (!log.isEmpty())
        texts += log.takeFirst().first().toString();
    return texts;
}
