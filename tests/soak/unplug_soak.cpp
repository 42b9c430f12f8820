// An adapter pulled out and plugged in again, over and over, whatever the window is doing: one
// message each time, the next session works, and nothing is leaked.
//
//   unplug_soak [times in each state]
#include "soak.h"

#include <random>

namespace {

constexpr int WARM_UP = 50;          // in which Qt's caches fill
constexpr double MOST_GROWTH_MB = 6; // three times what file dialogs were seen to keep

// What the window does, and the box that makes it do so.
constexpr std::pair<const char*, const char*> STATES[] = {
    {"idle", "checkBox_window_auto_clr"},      {"auto send", "checkBox_auto_send"},
    {"send in turn", "checkBox_send_in_turn"}, {"loop", "checkBox_loop"},
    {"sending a file", "checkBox_send_file"},
};

class UnplugSoak : public Soak
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

        for (const auto& [state, box] : STATES)
            soak(state, box, times);
    }

private:
    void soak(const char* state, const char* box, int times)
    {
        ProcessFigures before;
        for (int i = 0; i < times; ++i) {
            if (i == qMin(times / 2, WARM_UP))
                before = ProcessFigures();
            plug_in();
            check(box);
            click("pushButton_send");
            const QByteArray data = mixed_bytes(10000);
            if (random() % 2 == 0) // what comes is on the way, too
                expect(::write(adapter->master_fd(), data, size_t(data.size())) > 0, "none comes");
            QTest::qWait(int(random() % 4));
            pull_out();
            if (!wait_until([this] { return closed() && !answers.boxes.isEmpty(); }))
                throw std::runtime_error(std::string("still open: ") + state);
            QTest::qWait(2); // for a second message
            expect(answers.boxes.size() == 1, answers.boxes.join(", "));
            answers.boxes.clear();
            check("checkBox_loop", false);
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

    void plug_in()
    {
        adapter = std::make_unique<Pty>();
        port_name = adapter->link_into(sandbox.ports_folder(), "adapter");
        expect(port_open(), "the port can't be opened again");
        type("hello");
        click("pushButton_send");
        expect(adapter->read(5) == "hello", "the port opened again doesn't send");
    }

    // The node goes first, or the line does, and the window may have noticed before the other goes.
    void pull_out()
    {
        if (random() % 2 == 0)
            adapter->unlink();
        else
            adapter->hang_up();
        QTest::qWait(int(random() % 3));
        adapter->unlink();
        adapter->hang_up();
    }

    std::unique_ptr<Pty> adapter;
    std::mt19937 random{1};
};

} // namespace

int main(int argc, char** argv)
{
    return soak_main<UnplugSoak>(argc, argv, 500);
}
