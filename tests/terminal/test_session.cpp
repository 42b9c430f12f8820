#include "windowtest.h"

#include "qlinkcfgdlg.h"

#include <QComboBox>
#include <QFile>
#include <QSettings>
#include <ctime>

namespace {

double cpu_seconds()
{
    timespec t = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

const char* const SESSION_WIDGETS[] = {"checkBox_auto_send", "checkBox_send_in_turn",
                                       "checkBox_send_file", "pushButton_send", "checkBox_loop"};

class Session : public WindowTest
{
protected:
    Session() { window_start(); }

    QString enabled_widgets() const
    {
        QString names;
        for (const char* const name : SESSION_WIDGETS)
            if (enabled(name))
                names += QString(name).section('_', 1) + " ";
        return names.trimmed();
    }

    bool closed() const { return find<QPushButton>("pushButton_open")->text() == "&open"; }
};

} // namespace

TEST_F(Session, OpensDescribesAndCloses)
{
    EXPECT_EQ(enabled_widgets(), "");
    ASSERT_TRUE(port_open());
    EXPECT_EQ(enabled_widgets(), "auto_send send_in_turn send_file send loop");
    const QString description = port_name + ",115200,8,N,1";
    EXPECT_TRUE(status_shows(description));
    click("pushButton_open");
    EXPECT_TRUE(closed());
    EXPECT_EQ(enabled_widgets(), "");
    EXPECT_TRUE(status_shows(description));
    EXPECT_TRUE(port_open());
    EXPECT_TRUE(answers.boxes.isEmpty());
}

TEST_F(Session, DescribesUnusualSettings)
{
    configure("serialSettings/baudrate", 24);
    configure("serialSettings/custombaud", 123456);
    configure("serialSettings/databits", 2);
    configure("serialSettings/parity", 3);
    configure("serialSettings/stopbits", 1);
    ASSERT_TRUE(port_open());
    EXPECT_TRUE(status_shows(port_name + ",123456,7,M,1.5"));
}

TEST_F(Session, ChangesNothingWhenTheDialogIsCancelled)
{
    answers.link_dialog = [](QLinkCfgDlg&) { return false; };
    click("pushButton_open");
    EXPECT_TRUE(closed());
    EXPECT_TRUE(status_shows("COMx"));
    EXPECT_TRUE(answers.boxes.isEmpty());
}

TEST_F(Session, SaysThatAPortCannotBeOpened)
{
    answers.link_dialog = [this](QLinkCfgDlg& dialog) {
        auto* const ports = dialog.findChild<QComboBox*>("portComboBox");
        ports->setCurrentIndex(ports->findText(port_name));
        pty.unlink(); // unplugged while the dialog is open
        return true;
    };
    click("pushButton_open");
    EXPECT_TRUE(closed());
    EXPECT_EQ(answers.boxes, QStringList("note|Open " + port_name + " failed"));
}

TEST_F(Session, OpensASerialPortWhateverTheLinkType)
{
    configure("QLinkCfgDlg/link_type", 2);
    EXPECT_TRUE(port_open());
}

TEST_F(Session, LeavesTheBoxesAsTheOrderOfClosingMakesThem)
{
    struct Row
    {
        const char* running;
        const char* enabled_after;
    };
    const Row rows[] = {
        {nullptr, ""},
        {"checkBox_auto_send", "send_in_turn send_file"},
        {"checkBox_send_in_turn", "send_file"},
        {"checkBox_loop", ""},
    };
    type("text");
    for (const Row& row : rows) {
        ASSERT_TRUE(port_open());
        if (row.running)
            check(row.running);
        click("pushButton_open");
        EXPECT_EQ(enabled_widgets(), row.enabled_after) << (row.running ? row.running : "idle");
        EXPECT_FALSE(find<QCheckBox>("checkBox_auto_send")->isChecked());
    }
    EXPECT_TRUE(find<QCheckBox>("checkBox_loop")->isChecked());
    ASSERT_TRUE(port_open());
    EXPECT_EQ(enabled_widgets(), "auto_send send_in_turn send_file send loop");
}

TEST_F(Session, MindsOnlyItsOwnPort)
{
    Pty other;
    other.link_into(sandbox.ports_folder(), "other");
    ASSERT_TRUE(port_open());
    other.unlink();
    ASSERT_TRUE(receive("x", 1));
    EXPECT_FALSE(closed());
    EXPECT_TRUE(answers.boxes.isEmpty());
}

// What goes on when the device is pulled out.
enum class Work { IDLE, RECEIVING, AUTO_SEND, LOOP, SEND_FILE, IN_TURN };
enum class Pull { UNLINK, HANG_UP };

class Removal : public Session, public testing::WithParamInterface<std::tuple<Work, Pull>>
{
protected:
    void begin(Work work)
    {
        switch (work) {
        case Work::IDLE:
            break;
        case Work::RECEIVING:
            ASSERT_TRUE(receive(mixed_bytes(5000), 5000));
            break;
        case Work::AUTO_SEND:
            find<QSpinBox>("spinBox_send_interval")->setValue(1);
            type("data");
            check("checkBox_auto_send");
            ASSERT_TRUE(wait_until([&] { return !pty.read_now().isEmpty(); }));
            break;
        case Work::LOOP:
            check("checkBox_loop");
            ASSERT_TRUE(receive("echo", 4));
            break;
        case Work::SEND_FILE:
            answers.file = sandbox.path("big");
            check("checkBox_send_file");
            click("pushButton_send");
            ASSERT_TRUE(wait_until([&] { return !pty.read_now().isEmpty(); }));
            break;
        case Work::IN_TURN:
            check("checkBox_send_in_turn");
            break;
        }
    }
};

TEST_P(Removal, EndsTheSessionWithOneMessage)
{
    QFile file(sandbox.path("big"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(mixed_bytes(1000000));
    file.close();
    const auto [work, pull] = GetParam();
    ASSERT_TRUE(port_open());
    begin(work);
    if (pull == Pull::UNLINK)
        pty.unlink();
    else
        pty.hang_up();
    ASSERT_TRUE(wait_until([&] { return closed() && !answers.boxes.isEmpty(); }));
    const double cpu_then = cpu_seconds();
    QTest::qWait(300);
    EXPECT_LT(cpu_seconds() - cpu_then, 0.15);
    if (work != Work::IN_TURN) { // its first tick may have come first, and found no string
        EXPECT_EQ(answers.boxes, QStringList("|" + port_name + " removed"));
    }
    EXPECT_FALSE(enabled("pushButton_send"));
    EXPECT_FALSE(find<QCheckBox>("checkBox_send_file")->isChecked());

    pty.unlink();
    Pty next;
    port_name = next.link_into(sandbox.ports_folder(), "next");
    EXPECT_TRUE(port_open());
    type("again");
    click("pushButton_send");
    EXPECT_EQ(next.read(5), "again");
}

INSTANTIATE_TEST_SUITE_P(All, Removal,
                         testing::Combine(testing::Values(Work::IDLE, Work::RECEIVING,
                                                          Work::AUTO_SEND, Work::LOOP,
                                                          Work::SEND_FILE, Work::IN_TURN),
                                          testing::Values(Pull::UNLINK, Pull::HANG_UP)));

TEST_F(Session, EndsWithTheWindow)
{
    ASSERT_TRUE(port_open());
    type("data");
    check("checkBox_auto_send");
    window_end();
    pty.hang_up();
    QTest::qWait(20);
}
