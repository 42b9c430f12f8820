// An adapter pulled out and plugged in again, over and over, whatever the window is doing: one
// message each time, the next session works, and nothing is left behind.
//
//   unplug_soak [times in each state]
#include "soak.h"

#include <QMap>
#include <random>

namespace {

constexpr int WARM_UP = 50;          // in which the toolkit's caches fill
constexpr double MOST_GROWTH_MB = 6; // three times what file dialogs were seen to keep
const char FILE_TO_SEND[] = "big";

class UnplugSoak : public Soak
{
public:
    void run(int times)
    {
        for (const int row : {0, 3})
            set_row(row, true, false, "in turn");
        QFile file(FILE_TO_SEND);
        file.open(QIODevice::WriteOnly);
        file.write(mixed_bytes(1000000));
        file.close();
        answers.file = QFileInfo(file).absoluteFilePath();
        check("checkBox_window_auto_clr");
        set("spinBox_send_interval", 1);
        set("spinBox_send_in_turn_interval", 1);

        soak("idle", times, [] {});
        soak("receiving", times, [this] {
            const QByteArray data = mixed_bytes(10000);
            return ::write(pty_now->master_fd(), data.constData(), size_t(data.size())) > 0;
        });
        soak("auto send", times, [this] { check("checkBox_auto_send"); });
        soak("send in turn", times, [this] { check("checkBox_send_in_turn"); });
        soak("loop", times, [this] {
            check("checkBox_loop");
            pty_now->write("echo");
        });
        check("checkBox_loop", false);
        soak("sending a file", times, [this] {
            check("checkBox_send_file");
            click("pushButton_send");
        });
    }

private:
    template <typename Begin> void soak(const char* state, int times, const Begin& begin)
    {
        QMap<QString, int> messages;
        ProcessFigures before = ProcessFigures::now();
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < times; ++i) {
            if (i == qMin(times / 2, WARM_UP))
                before = ProcessFigures::now();
            plug_in();
            begin();
            QTest::qWait(int(random() % 4));
            pull_out();
            if (!wait_until([this] { return closed() && !answers.boxes.isEmpty(); })) {
                expect(false, QString("%1, time %2: still open").arg(state).arg(i));
                std::exit(1);
            }
            QTest::qWait(2); // for a second message
            expect(answers.boxes.size() == 1,
                   QString("%1, time %2: %3").arg(state).arg(i).arg(answers.boxes.join(", ")));
            ++messages[answers.boxes.value(0).section('|', 1).replace(port_name, "PORT")];
            answers.boxes.clear();
        }
        const ProcessFigures after = ProcessFigures::now();
        std::printf("%-15s %d times in %.0f s, memory %+.1f MB, descriptors %+d to %d, threads %+d "
                    "to %d;",
                    state, times, double(clock.elapsed()) / 1000,
                    after.resident_mb - before.resident_mb, after.descriptors - before.descriptors,
                    after.descriptors, after.threads - before.threads, after.threads);
        for (auto it = messages.cbegin(); it != messages.cend(); ++it)
            std::printf(" %d x \"%s\"", it.value(), qPrintable(it.key()));
        std::printf("\n");
        expect(after.resident_mb - before.resident_mb <= MOST_GROWTH_MB, "memory grew");
        expect(after.descriptors <= before.descriptors, "descriptors are left open");
        expect(after.threads <= before.threads, "threads are left running");
    }

    void plug_in()
    {
        pty_now = std::make_unique<Pty>();
        port_name = pty_now->link_into(sandbox.ports_folder(), "adapter");
        expect(port_open(), "the port can't be opened again");
        type("hello");
        click("pushButton_send");
        expect(pty_now->read(5) == "hello", "the port opened again doesn't send");
    }

    // The node goes first, or the line does, and the window may have noticed before the other goes.
    void pull_out()
    {
        if (random() % 2 == 0)
            pty_now->unlink();
        else
            pty_now->hang_up();
        QTest::qWait(int(random() % 3));
        pty_now->unlink();
        pty_now->hang_up();
    }

    std::unique_ptr<Pty> pty_now;
    std::mt19937 random{1};
};

} // namespace

int main(int argc, char** argv)
{
    return soak_main<UnplugSoak>(argc, argv, 500);
}
