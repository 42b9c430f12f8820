// The example that reads a Modbus register, built against an installed copy of the library.
#include "modbusserver.h"
#include "sandbox.h"
#include "wait.h"

#include <QProcess>
#include <gtest/gtest.h>

namespace {

int run(QProcess& program, const QStringList& arguments)
{
    program.start(READ_REGISTER, arguments);
    EXPECT_TRUE(program.waitForFinished(PATIENCE_MS)) << program.errorString().toStdString();
    return program.exitCode();
}

TEST(ReadRegister, PrintsTheValueOfARegister)
{
    const Sandbox sandbox;
    Pty pty;
    ModbusServer server(pty, 7);
    server.reg(2) = 0x1234;
    QProcess program;
    EXPECT_EQ(run(program, {pty.device(), "7", "2"}), 0);
    EXPECT_EQ(program.readAllStandardOutput(), "4660\n");
    EXPECT_EQ(program.readAllStandardError(), "");
}

TEST(ReadRegister, TellsWhenItCant)
{
    const Sandbox sandbox;
    Pty pty;
    ModbusServer server(pty, 7);
    QProcess program;
    const QString too_far = QString::number(ModbusServer::REGISTERS);
    EXPECT_EQ(run(program, {pty.device(), "7", too_far}), 1);
    EXPECT_TRUE(program.readAllStandardError().startsWith("no value from device 7"));
    EXPECT_EQ(run(program, {pty.device() + "-none", "7", "2"}), 1);
    EXPECT_TRUE(program.readAllStandardError().startsWith("can't open"));
    EXPECT_EQ(run(program, {}), 2);
}

} // namespace
