// The list of ports, and the news of those that come and go.
#include "plainsettings.h"
#include "sandbox.h"
#include "serialport/qextserialenumerator.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

QStringList virtual_ports()
{
    QStringList names;
    for (const QextPortInfo& port : QextSerialEnumerator::getPorts())
        if (port.enumName == "virtual")
            names += port.portName;
    return names;
}

// Two ttys, a folder for links to them, and what an enumerator reports of these.
struct Enumerator : testing::Test
{
    void watch()
    {
        enumerator = std::make_unique<QextSerialEnumerator>();
        QObject::connect(enumerator.get(), &QextSerialEnumerator::deviceDiscovered,
                         [this](const QextPortInfo& port) { came += port.portName; });
        QObject::connect(enumerator.get(), &QextSerialEnumerator::deviceRemoved,
                         [this](const QextPortInfo& port) { went += port.portName; });
        enumerator->setUpNotifications();
    }
    QString link_first() { return a.link_into(sandbox.ports_folder(), "first"); }
    QString link_second() { return b.link_into(sandbox.ports_folder(), "second"); }

    Sandbox sandbox;
    Pty a, b;
    std::unique_ptr<QextSerialEnumerator> enumerator;
    QStringList came, went;
};

TEST_F(Enumerator, SortsComPortsByTheirNumber)
{
    QStringList names = {"COM10", "ZZ", "COM2", "/dev/ttyS1", "COM1"};
    std::sort(names.begin(), names.end(), port_name_less);
    EXPECT_EQ(names, QStringList({"/dev/ttyS1", "COM1", "COM2", "COM10", "ZZ"}));
}

TEST_F(Enumerator, ListsLinksToDevicesInAFolderThatOnlyTheUserCanWriteTo)
{
    const QString second = link_second();
    const QString first = link_first();
    QFile::link("/nowhere", sandbox.ports_folder() + "/dangling");
    file_write(sandbox.ports_folder() + "/plain", {});
    EXPECT_EQ(virtual_ports(), QStringList({first, second}));
    const auto mine = QFile::permissions(sandbox.ports_folder());
    QFile::setPermissions(sandbox.ports_folder(), mine | QFile::WriteOther);
    EXPECT_EQ(virtual_ports(), QStringList());
    // As a umask of 002 makes it; the runtime folder is closed.
    QFile::setPermissions(sandbox.ports_folder(), mine | QFile::WriteGroup);
    EXPECT_EQ(virtual_ports().size(), 2);
}

TEST_F(Enumerator, ReportsPortsThatComeAndGo)
{
    QDir(sandbox.ports_folder()).removeRecursively();
    const mode_t old_mask = umask(0); // the folder that it makes is private all the same
    watch();
    umask(old_mask);
    const QString first = link_first();
    EXPECT_TRUE(wait_until([&] { return came == QStringList(first); }));
    const QString second = link_second();
    EXPECT_TRUE(wait_until([&] { return came == QStringList({first, second}); }));
    a.unlink();
    EXPECT_TRUE(wait_until([&] { return went == QStringList(first); }));
}

TEST_F(Enumerator, ReportsOnceThatAnOpenPortHasLostItsDevice)
{
    for (const auto mode : {QextSerialPort::Polling, QextSerialPort::EventDriven}) {
        for (const bool listed : {false, true}) {
            Pty pty;
            const QString name =
                listed ? pty.link_into(sandbox.ports_folder(), "port") : pty.device();
            watch();
            QextSerialPort port(name, plain_settings(), mode);
            ASSERT_TRUE(port.open(QIODevice::ReadWrite));
            pty.hang_up();
            EXPECT_TRUE(wait_until([&] { return !went.isEmpty(); }));
            pty.unlink();
            QTest::qWait(100);
            EXPECT_EQ(went, QStringList(name));
            went.clear();
        }
    }
}

TEST_F(Enumerator, MayBeDeletedInsideItsOwnSignal)
{
    link_first();
    link_second();
    watch();
    QObject::connect(enumerator.get(), &QextSerialEnumerator::deviceRemoved,
                     [this] { enumerator.reset(); });
    a.unlink();
    b.unlink();
    EXPECT_TRUE(wait_until([&] { return !enumerator; }));
    EXPECT_EQ(went.size(), 1);
}

} // namespace
