#include "plainsettings.h"
#include "pty.h"
#include "sandbox.h"
#include "serialport/qextserialenumerator.h"
#include "wait.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <algorithm>
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

QStringList names_in(const QSignalSpy& spy)
{
    QStringList names;
    for (const auto& call : spy)
        names += call.at(0).value<QextPortInfo>().portName;
    return names;
}

// Two ttys, and a folder for links to them.
struct Enumerator : testing::Test
{
    Sandbox sandbox;
    Pty a, b;
    QString link_first() { return a.link_into(sandbox.ports_folder(), "first"); }
    QString link_second() { return b.link_into(sandbox.ports_folder(), "second"); }
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
    QFile plain(sandbox.ports_folder() + "/plain");
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
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
    QextSerialEnumerator enumerator;
    QSignalSpy came(&enumerator, &QextSerialEnumerator::deviceDiscovered);
    QSignalSpy went(&enumerator, &QextSerialEnumerator::deviceRemoved);
    const mode_t old_mask = umask(0); // the folder that it makes is private all the same
    enumerator.setUpNotifications();
    umask(old_mask);
    const QString first = link_first();
    EXPECT_TRUE(wait_until([&] { return names_in(came) == QStringList(first); }));
    const QString second = link_second();
    EXPECT_TRUE(wait_until([&] { return names_in(came) == QStringList({first, second}); }));
    a.unlink();
    EXPECT_TRUE(wait_until([&] { return names_in(went) == QStringList(first); }));
}

TEST_F(Enumerator, ReportsOnceThatAnOpenPortHasLostItsDevice)
{
    for (int row = 0; row < 4; ++row) {
        Pty pty;
        const bool listed = row % 2;
        const QString name = listed ? pty.link_into(sandbox.ports_folder(), "port") : pty.device();
        QextSerialEnumerator enumerator;
        QSignalSpy went(&enumerator, &QextSerialEnumerator::deviceRemoved);
        enumerator.setUpNotifications();
        QextSerialPort port(name, plain_settings(),
                            row / 2 ? QextSerialPort::EventDriven : QextSerialPort::Polling);
        ASSERT_TRUE(port.open(QIODevice::ReadWrite));
        pty.hang_up();
        EXPECT_TRUE(wait_until([&] { return went.count() > 0; }));
        pty.unlink();
        QTest::qWait(100);
        EXPECT_EQ(names_in(went), QStringList(name));
    }
}

TEST_F(Enumerator, MayBeDeletedInsideItsOwnSignal)
{
    link_first();
    link_second();
    auto* enumerator = new QextSerialEnumerator;
    int reports = 0;
    QObject::connect(enumerator, &QextSerialEnumerator::deviceRemoved, [&] {
        ++reports;
        delete enumerator;
    });
    enumerator->setUpNotifications();
    a.unlink();
    b.unlink();
    EXPECT_TRUE(wait_until([&] { return reports > 0; }));
    EXPECT_EQ(reports, 1);
}

} // namespace
