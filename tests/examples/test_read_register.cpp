// The example that reads a Modbus register, built against an installed copy of the library.
#include "modbusserver.h"
#include "sandbox.h"
#include "wait.h"

#include <QProcess>
#include <gtest/gtest.h>

namespace {

TEST(ReadRegister, PrintsTheValueOrTellsWhyThereIsNone)
{
    const Sandbox sandbox;
    Pty pty;
    ModbusServer server(pty, 7);
    server.reg(2) = 0x1234;
    const QString too_far = QString::number(ModbusServer::REGISTERS);
    const struct
    {
        QStringList arguments;
        int exit_code;
        QByteArray output, error;
    } rows[] = {
        {{pty.device(), "7", "2"}, 0, "4660\n", ""},
        {{pty.device(), "7", too_far}, 1, "", "no value from device 7"},
        {{pty.device() + "-none", "7", "2"}, 1, "", "can't open"},
        {{}, 2, "", ""},
    };
    for (const auto& row : rows) {
        QProcess program;
        program.start(READ_REGISTER, row.arguments);
        EXPECT_TRUE(program.waitForFinished(PATIENCE_MS)) << program.errorString().toStdString();
        EXPECT_EQ(program.exitCode(), row.exit_code);
        EXPECT_EQ(program.readAllStandardOutput(), row.output);
        EXPECT_TRUE(program.readAllStandardError().startsWith(row.error));
    }
}

} // namespace
