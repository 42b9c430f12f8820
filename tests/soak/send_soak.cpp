// An hour of auto send and an hour of sending in turn, in simulated time: no send is lost, doubled,
// out of order or outside its interval.
//
// The clock that Qt's timers read stays where this program puts it, so the window's own timers run
// as they would in that hour. It goes on only when the bytes of a send have come out of the
// pseudo-terminal.
//
//   send_soak [minutes of each]
#include "windowsoak.h"

#include <cstdint>
#include <random>
#include <sys/syscall.h>
#include <time.h>

namespace {

constexpr std::int64_t NS_PER_MS = 1'000'000, NS_PER_S = 1'000'000'000;
std::int64_t simulated_ns = 0; // CLOCK_MONOTONIC; 0 means the system's own

} // namespace

// In place of the C library's, for Qt too.
extern "C" int clock_gettime(clockid_t id, timespec* now) noexcept
{
    if (id != CLOCK_MONOTONIC || simulated_ns == 0)
        return int(syscall(SYS_clock_gettime, id, now));
    *now = {time_t(simulated_ns / NS_PER_S), long(simulated_ns % NS_PER_S)};
    return 0;
}

namespace {

class SendSoak : public WindowSoak
{
public:
    void run(int minutes)
    {
        window_start();
        expect(port_open(), "the port can't be opened");
        simulated_ns = 315'360'000 * NS_PER_S; // ten years, later than the system's
        set("spinBox_send_interval", 10);
        type("sent");
        soak("checkBox_auto_send", 10, minutes, {"sent"});

        QByteArrayList texts;
        for (int row = 0; row < table()->rowCount(); ++row) {
            texts += "row" + QByteArray::number(row);
            set_row(row, true, false, texts.last());
        }
        set("spinBox_send_in_turn_interval", 20);
        soak("checkBox_send_in_turn", 20, minutes, texts);
        expect(answers.boxes.isEmpty(), "messages: " + answers.boxes.join(", "));
    }

private:
    void soak(const char* box, int interval_ms, int minutes, const QByteArrayList& texts)
    {
        std::mt19937 random(1);
        std::uniform_int_distribution<std::int64_t> step_ns(NS_PER_MS / 10, NS_PER_MS * 2);
        const std::int64_t interval_ns = interval_ms * NS_PER_MS, begin_ns = simulated_ns;
        const int due = minutes * 60'000 / interval_ms;
        int sends = 0, wrong = 0;
        std::int64_t latest_ns = 0;
        check(box);
        int shown = counted(); // until the first send, that of an earlier mode
        for (; simulated_ns < begin_ns + due * interval_ns + interval_ns / 2;
             simulated_ns += step_ns(random)) {
            QCoreApplication::processEvents();
            if (counted() == shown)
                continue;
            shown = counted();
            const QByteArray text = texts[sends % texts.size()];
            const std::int64_t late_ns = simulated_ns - begin_ns - ++sends * interval_ns;
            latest_ns = qMax(latest_ns, late_ns);
            wrong += late_ns < 0 || late_ns >= interval_ns || come_out(text.size()) != text;
        }
        check(box, false);
        std::printf("%s each %d ms for %d min of simulated time: %d sends of %d, %d wrong, at most "
                    "%.1f ms late\n",
                    box + strlen("checkBox_"), interval_ms, minutes, sends, due, wrong,
                    double(latest_ns) / NS_PER_MS);
        expect(sends == due && shown == due && wrong == 0 && come_out(1).isEmpty(),
               "not all sends were good");
    }
    int counted() const { return counters().section("CNT: ", 1).section(' ', 0, 0).toInt(); }
    // What the peer gets, until it has so many bytes or there were turns enough.
    QByteArray come_out(int size)
    {
        constexpr int MOST_TURNS = 20000;
        QByteArray got;
        for (int turn = 0; got.size() < size && turn < MOST_TURNS; ++turn) {
            QCoreApplication::processEvents();
            got += pty.read_now();
        }
        return got;
    }
};

} // namespace

int main(int argc, char** argv)
{
    return soak_main<SendSoak>(argc, argv, 60);
}
