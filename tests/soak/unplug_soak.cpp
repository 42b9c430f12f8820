// An adapter pulled out and plugged in again, over and over, whatever the window is doing: one
// message each time, the next session works, and nothing is leaked.
//
//   unplug_soak [times in each state]
#include "windowsoak.h"

#include <random>

namespace {

constexpr int WARM_UP = 50;          // in which Qt's caches fill
constexpr double MOST_GROWTH_MB = 6; // three times what file dialogs were seen to keep

class UnplugSoak : public WindowSoak
{
public:
    void run(int times)
    {
        window_start();
        for (const int row : {0, 3})
            set_row(row, true, false, "in turn");
        answers.file = sandbox.path("big");
        file_write(answers.file, mixed_bytes(1000000));
        set("spinBox_send_interval", 1);
        set("spinBox_send_in_turn_interval", 1);
        soak("idle", "checkBox_window_auto_clr", times);
        soak("auto send", "checkBox_auto_send", times);
        soak("send in turn", "checkBox_send_in_turn", times);
        soak("loop", "checkBox_loop", times);
        soak("sending a file", "checkBox_send_file", times);
    }

private:
    // The box makes the window do what the state says.
    void soak(const char* state, const char* box, int times)
    {
        ProcessFigures before;
        for (int i = 0; i < times; ++i) {
            if (i == qMin(times / 2, WARM_UP))
                before = ProcessFigures();
            unplug(box);
        }
        const ProcessFigures after;
        const double growth_mb = after.resident_mb - before.resident_mb;
        std::printf("%-15s %d times, memory %+.1f MB, descriptors %+d to %d, threads %+d to %d\n",
                    state, times, growth_mb, after.descriptors - before.descriptors,
                    after.descriptors, after.threads - before.threads, after.threads);
        expect(growth_mb <= MOST_GROWTH_MB && after.descriptors <= before.descriptors &&
                   after.threads <= before.threads,
               "something is leaked");
    }

    void unplug(const char* box)
    {
        Pty adapter;
        port_name = adapter.link_into(sandbox.ports_folder(), "adapter");
        expect(port_open(), "the port can't be opened again");
        type("hello");
        click("pushButton_send");
        expect(adapter.read(5) == "hello", "the port opened again doesn't send");
        check(box);
        click("pushButton_send");
        const QByteArray data = mixed_bytes(10000);
        if (random() % 2 == 0) // what comes is on the way, too
            expect(::write(adapter.master_fd(), data, size_t(data.size())) > 0, "none comes");
        QTest::qWait(int(random() % 4));

        // The node goes first, or the line does, and the window may notice before the other goes.
        if (random() % 2 == 0)
            adapter.unlink();
        else
            adapter.hang_up();
        QTest::qWait(int(random() % 3));
        adapter.unlink();
        adapter.hang_up();
        expect(wait_until([this] { return closed() && !answers.boxes.isEmpty(); }), "still open");
        QTest::qWait(2); // for a second message
        expect(answers.boxes.size() == 1, answers.boxes.join(", "));
        answers.boxes.clear();
        check("checkBox_loop", false);
    }

    std::mt19937 random{1};
};

} // namespace

int main(int argc, char** argv)
{
    return soak_main<UnplugSoak>(argc, argv, 500);
}
