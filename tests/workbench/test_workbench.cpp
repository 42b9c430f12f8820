#include "workbenchtest.h"

#include <QAccessible>
#include <QListView>
#include <QListWidget>
#include <QMenuBar>
#include <QMimeData>
#include <QSpinBox>
#include <QTableView>
#include <QToolButton>
#include <captures.h>
#include <map>
#include <set>

TEST_F(Workbench, UpgradesAModuleOverALineWithFaults)
{
    configure("workbench/timeout", 60);
    module_start("--drop 0.005 --corrupt 0.005 --seed 3 --hard-info A102");
    ASSERT_TRUE(connect_module());
    click("start");
    ASSERT_TRUE(run_end());
    EXPECT_TRUE(notice().contains("holds all 60000 bytes")) << qPrintable(notice());
    EXPECT_EQ(rom(), mixed_bytes(60000));
    EXPECT_EQ(pages(PageState::Sent), 15);
    EXPECT_EQ(percent(), 100);
    EXPECT_EQ(text<QLabel>("soft_info"), "M1 V1.00.000000 BOOT");
    EXPECT_EQ(text<QLabel>("hard_info"), "A1 02");
    EXPECT_EQ(text<QLabel>("page_size"), "4096 bytes");
}

TEST_F(Workbench, UpgradesAModuleOverTheNetworkAndSaysWhenItsConnectionIsLost)
{
    module_start("--listen 0");
    type("link_text", "tcp:" + module->address);
    ASSERT_TRUE(connect_module());
    click("start");
    ASSERT_TRUE(run_end());
    EXPECT_TRUE(notice().contains("holds all 60000 bytes")) << qPrintable(notice());
    EXPECT_EQ(rom(), mixed_bytes(60000));
    module->process.kill();
    ASSERT_TRUE(wait_until([&] { return text<QLabel>("connection_state") == "not connected"; }));
    EXPECT_TRUE(notice("connection_notice").contains("is lost"));
}

TEST_F(Workbench, CompletesWhatAStoppedRunBegan)
{
    module_start("--baud 460800");
    ASSERT_TRUE(connect_module());
    for (const char* const button : {"stop", "connect"}) {
        const int before = percent();
        click("start");
        ASSERT_TRUE(wait_until([&] { return percent() >= before + 33; }));
        click(button);
        ASSERT_TRUE(run_end());
        EXPECT_TRUE(notice().startsWith("The upgrade was stopped.")) << qPrintable(notice());
        EXPECT_EQ(first().stage_text(), "stopped");
        EXPECT_GT(pages(PageState::Unknown), 0);
        EXPECT_EQ(pages(PageState::Sending), 0);
    }
    ASSERT_TRUE(wait_until([&] { return text<QLabel>("connection_state") == "not connected"; }));
    ASSERT_TRUE(connect_module());
    click("start");
    ASSERT_TRUE(run_end());
    EXPECT_TRUE(first().good());
    EXPECT_GE(pages(PageState::Equal), 5);
    EXPECT_EQ(rom(), mixed_bytes(60000));
}

TEST_F(Workbench, RefusesFirmwareOfAnotherModule)
{
    module_start("--module M7");
    ASSERT_TRUE(connect_module());
    click("start");
    ASSERT_TRUE(run_end());
    EXPECT_TRUE(notice().startsWith("Wrong firmware: M1_2.bin is not for the module M7."));
    EXPECT_TRUE(rom().isEmpty());
    EXPECT_EQ(text<QLabel>("connection_state"), "connected");
}

TEST_F(Workbench, SurvivesAPortThatGoesInTheMiddle)
{
    module_start("--baud 460800");
    ASSERT_TRUE(connect_module());
    click("start");
    ASSERT_TRUE(wait_until([&] { return pages(PageState::Sent) >= 3; }));
    module->process.kill();
    ASSERT_TRUE(run_end());
    EXPECT_TRUE(notice().contains("has gone") || notice().contains("is lost"))
        << qPrintable(notice());
    ASSERT_TRUE(wait_until([&] { return text<QLabel>("connection_state") == "not connected"; }));
    EXPECT_TRUE(notice("connection_notice").contains("connect anew"));
    EXPECT_GE(pages(PageState::Sent), 3);
    click("start");
    EXPECT_TRUE(notice().startsWith("There is no link")) << qPrintable(notice());
    EXPECT_EQ(questions, 0);
}

TEST_F(Workbench, UpgradesSeveralModulesAtOnceAndSavesTheirResults)
{
    module_start();
    const Simulated second("boot --name second --image " + sandbox.path("rom2"));
    const Simulated third("boot --name third --module M7");
    for (const Simulated* const other : {&second, &third}) {
        chosen = other->address;
        click("module_add");
    }
    ASSERT_EQ(window->firmware().modules().count(), 3);
    const QString session = chosen = sandbox.path("session.pcapng");
    click("record");
    ASSERT_TRUE(wait_until([&] { return notice("record_notice").startsWith("Recording"); }));
    ASSERT_TRUE(connect_module());
    click("start");
    EXPECT_EQ(window->firmware().modules().running(), 3);
    ASSERT_TRUE(run_end());
    EXPECT_TRUE(notice().startsWith("2 of 3 modules hold the file")) << qPrintable(notice());
    EXPECT_EQ(file_content(sandbox.path("rom2")), mixed_bytes(60000));
    find<QTableView>("modules")->selectRow(1);
    EXPECT_TRUE(notice().startsWith("M1_2.bin: the module holds")) << qPrintable(notice());
    click("record");
    ASSERT_TRUE(wait_until([&] { return notice("record_notice").contains("is in"); }));
    std::map<std::uint32_t, QByteArray> sent; // to each port
    for (const CaptureRecord& record : read_records(file_content(session)))
        if (record.event == CaptureEvent::DataSent)
            sent[record.port] += record.bytes;
    EXPECT_EQ(sent.size(), 3U);
    EXPECT_EQ(std::count_if(sent.begin(), sent.end(),
                            [](const auto& port) { return port.second.size() > 60000; }),
              2);
    chosen = sandbox.path("results.csv");
    click("results_save");
    const QList<QByteArray> lines = file_content(chosen).split('\n');
    ASSERT_EQ(lines.size(), 5);
    EXPECT_TRUE(lines[2].startsWith("\"serial:" + second.address.toLocal8Bit() +
                                    ",115200,8N1\","
                                    "crc16,M1_2.bin,M1 V1.00.000000 BOOT,upgraded,60000,"));
    EXPECT_TRUE(lines[3].contains(",failed,"));
}

TEST_F(Workbench, SaysBadInputInOneSentenceInTheWindow)
{
    file_write(sandbox.path("empty.bin"), {});
    file_write(sandbox.path("file"), "x");
    module_start();
    const struct
    {
        const char* widget;
        QString typed;
        const char* button;
        const char* notice;
        const char* sentence;
    } rows[] = {
        {"firmware_file", "", "start", "firmware_notice", "Choose a firmware file first."},
        {"firmware_file", sandbox.path("empty.bin"), "start", "firmware_notice", "is empty"},
        {"firmware_file", sandbox.path("M1_2.bin"), "start", "firmware_notice", "There is no link"},
        {"link_text", "serial:/dev/none", "connect", "connection_notice", "There is no port"},
        {"link_text", "serial:" + sandbox.path("file"), "connect", "connection_notice",
         "is no serial port"},
        {"link_text", "tcp:127.0.0.1:1", "connect", "connection_notice", "There is no connection"},
        {"link_text", "serial", "connect", "connection_notice", "Link, character 7"},
        {"frame_text", "crc17", "connect", "connection_notice", "Link, character 7"},
    };
    for (const auto& row : rows) {
        type(row.widget, row.typed);
        click(row.button);
        EXPECT_TRUE(wait_until([&] { return notice(row.notice).contains(row.sentence); }))
            << row.sentence << ": " << qPrintable(notice(row.notice));
    }
    EXPECT_EQ(questions, 0);
}

TEST_F(Workbench, BeginsTheLinkDialogWithTheLinkThatIsThereAndKeepsWhatNobodyChanges)
{
    const Simulated first("echo --name a");
    module_start();
    const QString full = "serial:" + module->address + ",12345,7E2,rtscts";
    const std::pair<QString, QString> rows[] = {
        {"serial:boot,12345,7E2,rtscts", full},       {"rawudp:10.0.0.7:99", "udp:10.0.0.7:99"},
        {"tcp:[fe80::1]:4001", "tcp:[fe80::1]:4001"}, {full, full},
        {"serial:/dev/none", "serial:,115200,8N1"},
    };
    find<QSpinBox>("timeout")->setValue(60000);
    for (const auto& [typed, shown] : rows) {
        type("link_text", typed);
        click("link_choose");
        EXPECT_EQ(offered, shown);
        EXPECT_EQ(text<QLineEdit>("link_text"), typed);
        EXPECT_EQ(find<QSpinBox>("timeout")->value(), 60000);
    }
    EXPECT_EQ(notice("connection_notice"), "No serial port is chosen: choose one.");
    chosen = first.address;
    click("link_choose");
    EXPECT_EQ(text<QLineEdit>("link_text"), "serial:" + chosen + ",115200,8N1");
}

TEST_F(Workbench, NamesWhoHoldsAPortAndLeavesItAlone)
{
    module_start();
    LogFeed feed;
    LinkWorker other(feed);
    other.open(*window->connection().description());
    ASSERT_TRUE(wait_until([&] { return other.state() == LinkWorker::State::Open; }));
    click("connect");
    EXPECT_TRUE(wait_until([&] { return notice("connection_notice").contains("in use"); }));
    EXPECT_EQ(other.state(), LinkWorker::State::Open);
    other.close();
    other.open(*window->connection().description());
    EXPECT_TRUE(wait_until([&] { return other.state() == LinkWorker::State::Open; }));
}

TEST_F(Workbench, AsksBeforeItClosesDuringARunAndAbortsCleanly)
{
    module_start("--baud 115200");
    ASSERT_TRUE(connect_module());
    click("start");
    ASSERT_TRUE(wait_until([&] { return pages(PageState::Sent) >= 1; }));
    yes = false;
    window->close();
    EXPECT_TRUE(window->isVisible() && window->firmware().busy());
    yes = true;
    window->close();
    EXPECT_TRUE(wait_until([&] { return !window->isVisible(); }));
    EXPECT_EQ(questions, 2);
    EXPECT_EQ(first().verdict().what, "The upgrade was stopped.");
    window.reset();
    window_start();
    EXPECT_EQ(text<QLineEdit>("firmware_file"), sandbox.path("M1_2.bin"));
}

TEST_F(Workbench, SpeaksTheLanguageChosenInTheMenuAtOnceAndNextTime)
{
    window_start();
    const auto choose = [&](const QString& language) {
        for (QAction* const action : window->findChildren<QAction*>())
            if (action->text() == language)
                action->trigger();
        QCoreApplication::sendPostedEvents(); // the change of language is among them
    };
    EXPECT_EQ(text<QPushButton>("start"), "&Start");
    choose("中文");
    EXPECT_EQ(text<QPushButton>("start"), "开始(&S)");
    EXPECT_EQ(text<QPushButton>("connect"), "连接(&C)");
    choose("深色(&A)");
    EXPECT_LT(QApplication::palette().color(QPalette::Window).lightness(), 100);
    window->close();
    window.reset();
    window_start();
    EXPECT_EQ(text<QLabel>("connection_state"), "未连接");
    EXPECT_LT(QApplication::palette().color(QPalette::Window).lightness(), 100);
    choose("跟随桌面(&D)"); // of both menus; the desktop of a test speaks English
    choose("&Light");
    EXPECT_GT(QApplication::palette().color(QPalette::Window).lightness(), 200);
}

TEST_F(Workbench, WorksByKeysAlone)
{
    module_start();
    QApplication::setActiveWindow(window.get());
    QTest::keyClick(window.get(), Qt::Key_C, Qt::AltModifier);
    ASSERT_TRUE(wait_until([&] { return text<QLabel>("connection_state") == "connected"; }));
    std::set<QWidget*> reached;
    for (int step = 0; step < 60; ++step) {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : window.get(),
                        Qt::Key_Tab);
        reached.insert(QApplication::focusWidget());
    }
    for (const char* const name : {"connect", "firmware_file", "firmware_choose", "modules",
                                   "page_map", "packet", "verify_wait", "start", "log_find"})
        EXPECT_EQ(reached.count(find<QWidget>(name)), 1u) << name;
    QTest::keyClick(window.get(), Qt::Key_S, Qt::AltModifier);
    ASSERT_TRUE(wait_until([&] { return !notice().isEmpty(); }));
    EXPECT_TRUE(first().good()) << qPrintable(notice());
    EXPECT_EQ(QApplication::focusWidget(), find<QWidget>("start"));
    // A screen reader has a name for each.
    for (QWidget* const widget : reached)
        EXPECT_NE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name), "")
            << widget->metaObject()->className() << qPrintable(widget->objectName());
}

TEST_F(Workbench, FiltersTheLogAndFindsInIt)
{
    module_start();
    ASSERT_TRUE(connect_module());
    click("start");
    ASSERT_TRUE(run_end());
    auto* const view = find<QListView>("log_view");
    const auto rows = [&] { return view->model()->rowCount(); };
    ASSERT_TRUE(wait_until([&] {
        return view->model()->index(rows() - 1, 0).data().toString().contains("ldr: total took");
    }));
    const int all = rows();
    type("log_filter", "device reboot");
    EXPECT_EQ(rows(), 1);
    type("log_filter", "");
    EXPECT_EQ(rows(), all);
    type("log_find", "module name: M1");
    QTest::keyClick(find<QLineEdit>("log_find"), Qt::Key_Return);
    EXPECT_TRUE(view->currentIndex().data().toString().contains("ldr: module name: M1"));
}

TEST_F(Workbench, EditsFramersAsBoxesAndTakesADroppedFile)
{
    window_start();
    type("frame_text", "crc16+chan:05");
    QTimer::singleShot(0, window.get(), [] {
        QWidget* const dialog = QApplication::activeModalWidget();
        auto* const list = dialog->findChild<QListWidget*>("framers");
        ASSERT_EQ(list->count(), 2);
        list->item(1)->setText("chan:1234");
        list->setCurrentRow(1);
        for (QPushButton* const button : dialog->findChildren<QPushButton*>())
            if (button->text() == "&Up")
                button->click();
        qobject_cast<QDialog*>(dialog)->accept();
    });
    click("frame_edit");
    EXPECT_EQ(text<QLineEdit>("frame_text"), "chan:1234+crc16");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(sandbox.path("M1_2.bin"))});
    data.setText(data.urls()[0].toString()); // as file managers do
    QDragEnterEvent enter({}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(find<QLineEdit>("firmware_file"), &enter);
    QDropEvent drop(QPointF(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(find<QLineEdit>("firmware_file"), &drop);
    EXPECT_EQ(text<QLabel>("firmware_size"), "60000 bytes");
    // Qt fades the field's button in, by an object that lives as long as that takes.
    const auto* const clear = find<QLineEdit>("firmware_file")->findChild<QToolButton*>();
    EXPECT_TRUE(wait_until([&] { return clear->property("opacity") == 1; }));
}
