// An hour of auto send and an hour of sending in turn, in simulated time: no send is lost, doubled,
// out of order or outside its interval.
//
// The clock that the toolkit's timers read stands still but for the steps that this program makes
// it take, so the window's own timers run as they would in that hour. Each send has a text of its
// own, and the clock goes on only when its bytes have come out of the pseudo-terminal.
//
//   send_soak [minutes of each]
#include "soak.h"
#include "stringcolumns.h"

#include <QTableWidget>
#include <random>
#include <sys/syscall.h>
#include <time.h>

namespace {

constexpr qint64 NS_PER_MS = 1000000;
constexpr int TEXT_SIZE = 9;

// CLOCK_MONOTONIC in ns; 0 stands for the system's own.
qint64 simulated_ns = 0;

qint64 system_ns()
{
    timespec now = {};
    syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

} // namespace

// In place of the C library's, for the toolkit too.
extern "C" int clock_gettime(clockid_t id, timespec* now) noexcept
{
    if (id != CLOCK_MONOTONIC || simulated_ns == 0)
        return int(syscall(SYS_clock_gettime, id, now));
    *now = {time_t(simulated_ns / 1000000000), long(simulated_ns % 1000000000)};
    return 0;
}

namespace {

QString text_of_send(int number)
{
    return QString("%1;").arg(number, TEXT_SIZE - 1, 10, QChar('0'));
}

class SendSoak : public Soak
{
public:
    void run(int minutes)
    {
        expect(port_open(), "the port can't be opened");
        simulated_ns = system_ns();
        soak("checkBox_auto_send", find<QSpinBox>("spinBox_send_interval")->value(), minutes, 1,
             [this](int number) { type(text_of_send(number)); });

        auto* const table = find<QTableWidget>("tableWidget_strings");
        const int rows = table->rowCount();
        for (int row = 0; row < rows; ++row)
            table->item(row, ALIAS_COLUMN)->setCheckState(Qt::Checked);
        soak("checkBox_send_in_turn", find<QSpinBox>("spinBox_send_in_turn_interval")->value(),
             minutes, rows, [&](int number) {
                 table->item(number % rows, VALUE_COLUMN)->setText(text_of_send(number));
             });
        expect(answers.boxes.isEmpty(), "messages: " + answers.boxes.join(", "));
    }

private:
    // Send `number` takes the text that `prepare` has laid down, which it does `ahead` sends
    // before.
    template <typename Prepare>
    void soak(const char* box, int interval_ms, int minutes, int ahead, const Prepare& prepare)
    {
        const QLabel* const count = counter("CNT: ");
        const int due = minutes * 60 * 1000 / interval_ms;
        std::mt19937 random(1);
        std::uniform_int_distribution<qint64> step_ns(NS_PER_MS / 10, NS_PER_MS * 2);
        for (int number = 0; number < ahead; ++number)
            prepare(number);
        const qint64 begin_ns = simulated_ns, system_begin_ns = system_ns();
        const qint64 end_ns = begin_ns + (qint64(due) * 2 + 1) * interval_ms * NS_PER_MS / 2;
        int sends = 0, wrong = 0;
        double latest_ms = 0;
        check(box);
        int shown = value(count);
        for (; simulated_ns < end_ns; simulated_ns += step_ns(random)) {
            QCoreApplication::processEvents();
            if (value(count) == shown)
                continue;
            shown = value(count);
            const qint64 due_ns = begin_ns + qint64(sends + 1) * interval_ms * NS_PER_MS;
            const double late_ms = double(simulated_ns - due_ns) / NS_PER_MS;
            latest_ms = qMax(latest_ms, late_ms);
            wrong += late_ms < 0 || late_ms >= interval_ms ||
                     come_out() != text_of_send(sends).toLatin1();
            prepare(sends++ + ahead);
        }
        check(box, false);
        usleep(100000); // for what should not be there
        wrong += !come_out(1).isEmpty();
        std::printf("%s each %d ms for %d min of simulated time: %d sends of %d, %d wrong, at most "
                    "%.1f ms late; %.0f s of real time\n",
                    box + strlen("checkBox_"), interval_ms, minutes, sends, due, wrong, latest_ms,
                    double(system_ns() - system_begin_ns) / 1e9);
        expect(sends == due && value(count) == due && wrong == 0, "not all sends were good");
    }

    // The bytes of a send on the peer's side, or what has come of them when the patience is over.
    QByteArray come_out(int most_turns = 20000)
    {
        QByteArray got;
        for (int turn = 0; got.size() < TEXT_SIZE && turn < most_turns; ++turn) {
            QCoreApplication::processEvents();
            got += pty.read_now();
            if (turn > 10)
                usleep(100);
        }
        return got;
    }
};

} // namespace

int main(int argc, char** argv)
{
    return soak_main<SendSoak>(argc, argv, 60);
}
