#include "workbench/logfeed.h"

#include "stack/exchangetext.h"

#include <QDateTime>

void LogFeed::append(const QString& source, const QString& text)
{
    bool first = false;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        first = waiting.isEmpty() && lost == 0;
        if (waiting.size() >= MOST_WAITING) {
            lost += int(waiting.size());
            waiting.clear();
        }
        waiting.append({QDateTime::currentMSecsSinceEpoch(), source, text});
    }
    if (first)
        emit lines_wait();
}

QVector<LogLine> LogFeed::take()
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (lost > 0)
        waiting.prepend({waiting.first().time_ms, {}, tr("lines lost: %1").arg(lost)});
    lost = 0;
    return std::exchange(waiting, {});
}

LinkLog::LinkLog(LogFeed& feed, const QString& source, ExchangeSink* second)
    : feed(feed)
    , source(source)
    , second(second)
{
}

void LinkLog::sent(const QByteArray& bytes, int result)
{
    if (feed.exchanges())
        feed.append(source, sent_text(bytes, result));
    if (second)
        second->sent(bytes, result);
}

void LinkLog::received(const QByteArray& bytes, int result)
{
    if (feed.exchanges())
        feed.append(source, received_text(bytes, result));
    if (second)
        second->received(bytes, result);
}

void LinkLog::note(const QString& text)
{
    if (feed.exchanges())
        feed.append(source, note_text(text));
    if (second)
        second->note(text);
}
