// The lines that a link, framer or tool logs. Those of another thread come in with the event loop.
#pragma once

#include <QObject>
#include <QStringList>
#include <utility>

class LinkLog
{
public:
    template <typename Source> explicit LinkLog(Source* source)
    {
        QObject::connect(source, &Source::log, &here,
                         [this](const QString& line) { lines += line; });
    }

    // What has been logged since the last call.
    QStringList take() { return std::exchange(lines, {}); }

private:
    QObject here;
    QStringList lines;
};
