// What is found out about ports, from folders made for the test and from the system's own.
#include "pty.h"
#include "sandbox.h"
#include "serialport/portdetails.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

namespace {
class PortDetails : public testing::Test
{
protected:
    PortDetails()
    {
        const QString usb = sandbox.path("sys/devices/usb1/1-2");
        const QString tty = usb + "/1-2:1.0/tty";
        QDir().mkpath(tty);
        QDir().mkpath(sandbox.path("sys/bus/drivers/ftdi_sio"));
        QDir().mkpath(sandbox.path("sys/class/tty/") + number());
        QDir().mkpath(roots.by_id);
        QFile::link(tty, sandbox.path("sys/class/tty/") + number() + "/device");
        QFile::link(sandbox.path("sys/bus/drivers/ftdi_sio"), tty + "/driver");
        QFile::link(pty.device(), roots.by_id + "/usb-FTDI_FT232R_A10K-if00");
        file_write(usb + "/idVendor", "0403\n");
        file_write(usb + "/idProduct", "6001\n");
        file_write(usb + "/serial", "A10K\n");
    }

    // The last part of the device's name.
    QString number() const { return QFileInfo(pty.device()).fileName(); }

    Sandbox sandbox;
    Pty pty;
    PortRoots roots{sandbox.path("by-id"), sandbox.path("sys"), sandbox.path("proc")};
};

TEST_F(PortDetails, IdentityIsReadFromTheFoldersOfTheSystem)
{
    const PortIdentity known = port_identity({pty.device(), {}, {}, {}, 0, 0}, roots);
    EXPECT_EQ(known.stable_names, QStringList("usb-FTDI_FT232R_A10K-if00"));
    EXPECT_EQ(known.usb_id, "0403:6001");
    EXPECT_EQ(known.serial_number, "A10K");
    EXPECT_EQ(known.driver, "ftdi_sio");
    // On Windows and in a container: what the list of ports knows.
    const PortRoots nowhere = {"/none", "/none", "/none"};
    const PortIdentity bare = port_identity({pty.device(), {}, {}, {}, 0x1a86, 0x23}, nowhere);
    EXPECT_EQ(bare.usb_id, "1a86:0023");
    EXPECT_TRUE(bare.stable_names.isEmpty() && bare.driver.isEmpty());
}

TEST_F(PortDetails, AnyPartThatOnlyOnePortHasNamesIt)
{
    const QList<QextPortInfo> ports = {{"/dev/ttyUSB1", {}, "Bridge", "CP210x", 0x10c4, 0xea60},
                                       {"/dev/ttyUSB10", {}, "FT232R", "virtual", 0, 0},
                                       {pty.device(), {}, "UART", "usb maker", 0, 0},
                                       {"/run/ports/FT232R", {}, "sim", "virtual", 0, 0}};
    const QString stable = "usb-FTDI_FT232R_A10K-if00";
    const struct
    {
        const char* text;
        QStringList names;
    } rows[] = {
        {"ttyUSB1", {"/dev/ttyUSB1"}},
        {"ttyUSB10", {"/dev/ttyUSB10"}},
        {"FT232R", {"/run/ports/FT232R"}}, // exact, though parts of others are the same
        {"usb-FTDI_FT232R_A10K-if00", {pty.device()}},
        {"0403:6001", {pty.device()}},
        {"a10k", {pty.device()}},
        {"ftdi_sio", {pty.device()}},
        {"cp210", {"/dev/ttyUSB1"}},
        {"cp21", {}}, // cuts a number
        {"403:6001", {}},
        {"virtual", {"/dev/ttyUSB10", "/run/ports/FT232R"}},
        {"nothing", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ports_named(row.text, ports, roots), row.names) << row.text;
}

TEST_F(PortDetails, HoldersAreFoundByDescriptorAndByLock)
{
    const struct
    {
        const char* pid;
        const char* program;
        QStringList open;
    } programs[] = {{"100", "reader", {"/dev/null", pty.device()}},
                    {"200", "maker", {"/dev/ptmx", pty.device()}},
                    {"300", "other", {"/dev/null"}}};
    for (const auto& program : programs) {
        const QString folder = roots.proc + '/' + program.pid;
        QDir().mkpath(folder + "/fd");
        file_write(folder + "/comm", QByteArray(program.program) + '\n');
        for (int i = 0; i < program.open.size(); ++i)
            QFile::link(program.open[i], folder + "/fd/" + QString::number(i));
    }
    const auto holders = port_holders(pty.device(), roots);
    ASSERT_EQ(holders.size(), 1);
    EXPECT_EQ(shown(holders[0]), "reader (100)");
    EXPECT_FALSE(holders[0].locked);
    EXPECT_EQ(port_bar(pty.device(), holders), PortBar::None);

    // The system's own list of locks. This process is the maker too, and is found by its lock.
    const int other = ::open(pty.device().toLocal8Bit(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
    const auto locking = port_holders(pty.device());
    ASSERT_EQ(locking.size(), 1);
    EXPECT_EQ(locking[0].pid, ::getpid());
    EXPECT_EQ(port_bar(pty.device(), locking), PortBar::Locked);
    ::close(other);
}

TEST_F(PortDetails, WhatCanNotBeAPortIsToldFromAMissingOne)
{
    file_write(sandbox.path("file"), {});
    EXPECT_EQ(port_bar(sandbox.path("file"), {}), PortBar::NoPort);
    EXPECT_EQ(port_bar(sandbox.path("none"), {}), PortBar::Missing);
    EXPECT_EQ(port_bar("ttyNONE7", {}), PortBar::Missing);
}
} // namespace
