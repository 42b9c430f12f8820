// Log lines on their way from the threads of the links to the window.
#pragma once

#include "stack/exchangesink.h"

#include <QObject>
#include <QVector>
#include <atomic>
#include <cstdint>
#include <mutex>

struct LogLine
{
    std::int64_t time_ms; // since the epoch
    QString source;       // the link
    QString text;
};

// Any thread may append. A reader that lags loses the oldest lines, and a line says how many.
class LogFeed : public QObject
{
    Q_OBJECT

public:
    static constexpr int MOST_WAITING = 20000;

    // Exchanges are logged as well as notes.
    void exchanges_set(bool on) { log_exchanges = on; }
    bool exchanges() const { return log_exchanges; }

    void append(const QString& source, const QString& text);
    // All that waits.
    QVector<LogLine> take();

signals:
    // Once, until the next take().
    void lines_wait();

private:
    std::mutex mutex;
    QVector<LogLine> waiting;
    int lost = 0;
    std::atomic<bool> log_exchanges{true};
};

// What passes one link, as lines of the feed, and for a second sink if there is one. Both outlive
// it.
class LinkLog final : public ExchangeSink
{
public:
    LinkLog(LogFeed& feed, const QString& source, ExchangeSink* second = nullptr);

    void sent(const QByteArray& bytes, int result) override;
    void received(const QByteArray& bytes, int result) override;
    void note(const QString& text) override;

private:
    LogFeed& feed;
    const QString source;
    ExchangeSink* const second;
};
