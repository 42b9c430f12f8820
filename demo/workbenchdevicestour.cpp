// A tour of the workbench's pages for single devices that nobody has to click through: searches on
// a cnet port, changes a word of a device, sends payloads to a port that echoes, and takes
// pictures.
//
//   tarnwick-workbench-devices-tour LANGUAGE PALETTE FOLDER CNET-PORT ECHO-PORT
//
// Exit codes: 0 all went well, 1 something didn't, 2 wrong arguments.
#include "workbench/exchangepage.h"
#include "workbench/searchpage.h"
#include "workbenchdriver.h"

#include <QElapsedTimer>
#include <QTabWidget>
#include <QTableView>

namespace {

constexpr int ATTEMPTS = 3; // a busy machine may keep the simulated device from answering in time

class Tour : private WorkbenchDriver
{
public:
    Tour(const Settings& settings, const QString& folder)
        : WorkbenchDriver(settings, folder, {1120, 860})
    {
        watch.setTimerType(Qt::PreciseTimer);
        QObject::connect(&watch, &QTimer::timeout, &watch, [this] {
            longest_ms = std::max(longest_ms, double(since.nsecsElapsed()) / 1e6 - 1);
            since.start();
        });
    }

    bool run(const QString& cnet, const QString& echo)
    {
        const bool good = search(cnet) && exchange(echo);
        std::printf("longest stall: %.1f ms\n", longest_ms);
        return good;
    }

private:
    // Pictures take longer than a window may.
    void shoot(const QString& name)
    {
        watch.stop();
        WorkbenchDriver::shoot(window, name);
        watch_start();
    }
    void watch_start()
    {
        since.start();
        watch.start(1);
    }
    bool connected(const QString& port)
    {
        disconnect();
        port_set(port);
        return connect();
    }
    void page_show(QWidget& page) const { find<QTabWidget>("pages")->setCurrentWidget(&page); }

    bool search(const QString& port)
    {
        SearchPage& page = window.search();
        page_show(page);
        if (!connected(port))
            return false;
        watch_start();
        for (int attempt = 0;
             attempt < ATTEMPTS && page.map().count_of(HeatState::Searched) < HeatMap::CELLS;
             ++attempt) {
            click("search_start");
            wait([&] { return !page.busy() || page.map().count_of(HeatState::Searched) >= 40; });
            shoot("workbench-search-run");
            wait([&] { return !page.busy(); });
            say("search_notice");
        }
        return page.devices().count() > 0 && block_change();
    }

    bool block_change()
    {
        SearchPage& page = window.search();
        auto* const devices = find<QTableView>("devices");
        QTest::mouseClick(devices->viewport(), Qt::LeftButton, {},
                          devices->visualRect(devices->model()->index(0, 0)).center());
        wait([&] { return !page.busy(); });
        auto* const words = find<QTableView>("block");
        if (words->model()->rowCount() == 0)
            return false;
        words->model()->setData(words->model()->index(3, 0), "11223344");
        shoot("workbench-search");
        click("block_write");
        wait([&] { return !page.busy(); });
        say("search_notice");
        return words->model()->index(3, 1).data() == "11 22 33 44";
    }

    bool exchange(const QString& port)
    {
        ExchangePage& page = window.exchanges();
        page_show(page);
        if (!connected(port))
            return false;
        for (const char* const payload : {"01 03 00 00 00 02", "48 65 6C 6C 6F", "64"}) {
            find<QLineEdit>("payload")->setText(payload);
            click("send");
            wait([&] { return !page.busy(); });
            say("exchange_notice");
        }
        find<QTableView>("exchange_table")->selectRow(1);
        shoot("workbench-exchanges");
        return page.history().record(2).ending == ExchangeEnding::Answered;
    }

    QTimer watch; // how long the event loop was away
    QElapsedTimer since;
    double longest_ms = 0;
};

} // namespace

int main(int argc, char** argv)
{
    high_dpi_set();
    QApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() != 6) {
        std::fprintf(stderr, "usage: tarnwick-workbench-devices-tour LANGUAGE PALETTE FOLDER "
                             "CNET-PORT ECHO-PORT\n");
        return 2;
    }
    Tour tour({{"workbench/language", words[1]},
               {"workbench/palette", words[2]},
               {"workbench/frame", "crc16"},
               {"workbench/timeout", 150}},
              words[3]);
    return tour.run(words[4], words[5]) ? 0 : 1;
}
