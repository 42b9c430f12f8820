// The examples, built against an installed copy of the library, on devices that answer and without.
#include "modbusserver.h"
#include "pty.h"
#include "simulated.h"

#include <gtest/gtest.h>

namespace {

TEST(Examples, PrintWhatTheDeviceSaysOrWhyThereIsNothing)
{
    const Sandbox sandbox;
    Pty pty;
    ModbusServer server(pty, 7);
    server.reg(2) = 0x1234;
    const QString past_the_last = QString::number(ModbusServer::REGISTERS);
    const Simulated echo("echo");
    const Simulated boot("boot --start-time 0 --image " + sandbox.path("rom"));
    const Simulated cnet("cnet --device 9,0,0x1234 --device 30,2,0xABCD");
    const QString firmware = sandbox.path("M1_2.bin");
    file_write(firmware, mixed_bytes(5000, 1));
    const QString none = sandbox.path("none");
    const struct
    {
        QString example;
        QStringList arguments;
        int exit_code;
        QByteArray output, error; // the end of one, the beginning of the other
    } rows[] = {
        {"read_register", {pty.device(), "7", "2"}, 0, "4660\n", ""},
        {"read_register", {pty.device(), "7", past_the_last}, 1, "", "no value from device 7"},
        {"read_register", {none, "7", "2"}, 1, "", "can't open"},
        {"read_register", {}, 2, "", "usage"},
        {"custom_framer", {echo.address, "hello"}, 0, "5 bytes: hello\n", ""},
        {"custom_framer", {none, "hello"}, 1, "", "can't write"},
        {"search", {cnet.address, "9", "30"}, 0, "\n2 found\n", ""},
        {"search", {none}, 1, "", "can't open"},
        {"upgrade", {boot.address, firmware}, 0, "4096 of 5000 bytes\n", "ldr: "},
        {"upgrade", {boot.address, none}, 1, "", "ldr: "},
    };
    for (const auto& row : rows) {
        QProcess program;
        program.start(EXAMPLES "/" + row.example, row.arguments);
        EXPECT_TRUE(program.waitForFinished(PATIENCE_MS)) << program.errorString().toStdString();
        EXPECT_EQ(program.exitCode(), row.exit_code) << qPrintable(row.example);
        const QByteArray output = program.readAllStandardOutput();
        EXPECT_TRUE(output.endsWith(row.output)) << output.constData();
        const QByteArray error = program.readAllStandardError();
        EXPECT_TRUE(error.startsWith(row.error)) << error.constData();
    }
    EXPECT_EQ(file_content(sandbox.path("rom")), file_content(firmware));
}

} // namespace
