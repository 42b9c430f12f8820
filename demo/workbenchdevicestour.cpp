// A tour of the workbench's pages for single devices that nobody has to click through: searches on
// a cnet port, changes a word of a device, sends payloads to a port that echoes, and takes
// pictures.
//
//   tarnwick-workbench-devices-tour LANGUAGE PALETTE FOLDER CNET-PORT ECHO-PORT
//
// Exit codes: 0 all went well, 1 something didn't, 2 wrong arguments.
#include "workbench/connectionbar.h"
#include "workbench/exchangepage.h"
#include "workbench/searchpage.h"
#include "workbench/workbenchwindow.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <functional>

namespace {

constexpr int PATIENCE_MS = 120000;
constexpr int PAUSE_MS = 100;
constexpr int ATTEMPTS = 3; // a busy machine may keep the simulated device from answering in time

class Tour
{
public:
    Tour(const QString& ini_path, const QString& shots)
        : window(ini_path)
        , shots(shots)
    {
        window.show();
        window.resize(1120, 860);
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
    template <typename Widget> Widget* find(const char* name) const
    {
        return window.findChild<Widget*>(name);
    }
    void click(const char* name) const
    {
        QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton);
    }
    void say(const char* name) const
    {
        const auto* const notice = find<QWidget>(name);
        std::printf("%s\n", qPrintable(notice->findChild<QLabel*>("notice_text")->text()));
    }
    // Pictures take longer than a window may.
    void shoot(const QString& name)
    {
        QTest::qWait(PAUSE_MS);
        watch.stop();
        window.grab().save(QDir(shots).filePath(name + ".png"));
        watch_start();
    }
    void watch_start()
    {
        since.start();
        watch.start(1);
    }
    // In an event loop as the program's own, where QTest would sleep between its looks.
    bool wait(const std::function<bool()>& condition) const
    {
        QEventLoop loop;
        QTimer look;
        const QDeadlineTimer patience(PATIENCE_MS);
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (condition() || patience.hasExpired())
                loop.quit();
        });
        look.start(1);
        loop.exec();
        return condition();
    }
    bool connected(const QString& port)
    {
        using State = LinkWorker::State;
        LinkWorker& link = window.connection().link();
        if (link.state() == State::Open)
            click("connect");
        wait([&] { return link.state() == State::Closed; });
        find<QLineEdit>("link_text")->setText("serial:" + port + ",115200,8N1");
        click("connect");
        return wait([&] { return link.state() == State::Open; });
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

    WorkbenchWindow window;
    const QString shots;
    QTimer watch; // how long the event loop was away
    QElapsedTimer since;
    double longest_ms = 0;
};

} // namespace

int main(int argc, char** argv)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    QApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() != 6) {
        std::fprintf(stderr, "usage: tarnwick-workbench-devices-tour LANGUAGE PALETTE FOLDER "
                             "CNET-PORT ECHO-PORT\n");
        return 2;
    }
    const QTemporaryDir settings_folder;
    const QString ini = settings_folder.filePath("workbench.ini");
    {
        QSettings settings(ini, QSettings::IniFormat);
        settings.setValue("workbench/language", words[1]);
        settings.setValue("workbench/palette", words[2]);
        settings.setValue("workbench/frame", "crc16");
        settings.setValue("workbench/timeout", 150);
    }
    QDir().mkpath(words[3]);
    return Tour(ini, words[3]).run(words[4], words[5]) ? 0 : 1;
}
