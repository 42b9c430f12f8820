// The search of DorvCfg: a timer that listens for what modules report of themselves.

#include "tools/dorvcfg.h"

#include "framers/qframer.h"
#include "tools/atreply.h"

#include <QElapsedTimer>
#include <algorithm>

namespace {

constexpr int PERIOD_MS = 300;
constexpr int READ_SIZE = 128;
// Fixed until a search walks over bandwidths and spreading factors.
constexpr int REQUEST_TOTAL = 100;
constexpr int REQUEST_SENT = 50;

} // namespace

int DorvCfg::search_start(int /*unused*/)
{
    if (search_timer == nullptr) {
        search_timer = new QTimer(this);
        connect(search_timer, &QTimer::timeout, this, &DorvCfg::search_timer_timeout);
    }
    emit search_started(REQUEST_TOTAL);
    search_timer->start(PERIOD_MS);
    return 0;
}

// Reads through anything that isn't a report, but no longer than a period: a module that chatters
// without end must not hold the owner's event loop. The next tick goes on.
void DorvCfg::search_timer_timeout()
{
    emit search_progress(REQUEST_SENT, 0, 0);
    QElapsedTimer clock;
    clock.start();
    bool silent = true; // since the tick before
    do {
        QByteArray text(READ_SIZE, '\0');
        text.truncate(std::max(0, framer->lower_read(text.data(), READ_SIZE)));
        if (text.isEmpty()) {
            search_timer->stop(); // first, as a receiver may start the next search
            if (silent)
                devices_emit("\n"); // no more of a line comes
            emit search_finished();
            return;
        }
        silent = false;
        devices_emit(text);
        if (text.contains(AT_DEVICE_REPORT))
            return;
    } while (!clock.hasExpired(PERIOD_MS));
}

void DorvCfg::devices_emit(const QByteArray& text)
{
    search_text += text;
    const QStringList devices = at_devices_take(search_text);
    for (const QString& info : devices)
        emit dev_found(0, 0, info);
}
