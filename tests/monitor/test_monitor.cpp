// What a person does at a terminal.
#include "monitortest.h"

namespace {

TEST_F(Monitor, KeysGoOutAsTypedAndCommandsAfterThePrefix)
{
    start({});
    type("AT\r\x03");
    EXPECT_EQ(port->read(4), "AT\r\x03");
    port->write("\x1b[2Jh\xc3");
    port->write("\xa9llo\n");
    EXPECT_TRUE(shows("\\x1b[2Jh\xc3\xa9llo\r\n"));
    type("\x14nA\r");
    EXPECT_EQ(port->read(2), "A\n");
    EXPECT_TRUE(shows("Enter sends lf"));
    type("\x14x"
         "c0 ff:01\r");
    EXPECT_EQ(port->read(3), "\xc0\xff\x01");
    type("\x14x"
         "c0 f\r");
    EXPECT_TRUE(shows("not sent"));
    type("\x14h");
    EXPECT_TRUE(shows("view on"));
    port->write("xy");
    EXPECT_TRUE(shows("78 79"));
    type("\x14t\x14t\x14t\x14"
         "e\x14z\x14i\x14l\x14"
         "d\x14"
         "b\x14?");
    for (const char* text : {"stamps iso", "echo on", "no command", "received", "no control lines",
                             "DTR: ", "break: ", "time stamps: off"})
        EXPECT_TRUE(shows(text)) << text;
    type("\x14q");
    EXPECT_EQ(exit_code(), 0);
    EXPECT_TRUE(terminal_is_restored());
}

TEST_F(Monitor, LinesAreEditedAboveNothingOfWhatComes)
{
    start({"--line", "--send", "first"});
    EXPECT_EQ(port->read(6), "first\r");
    type("helo\x1b[Dl\r");
    EXPECT_EQ(port->read(6), "hello\r");
    type("\x1b[A\x1b[A\r");
    EXPECT_EQ(port->read(6), "first\r");
    type("kept");
    EXPECT_TRUE(shows("> kept"));
    port->write("came");
    EXPECT_TRUE(shows("came\r\n\r\x1b[K> kept"));
    port->write(" on");
    // Up to the end of what came, and the line again below it.
    EXPECT_TRUE(shows("\r\x1b[K\x1b[1A\r\x1b[4C on\r\n\r\x1b[K> kept"));
    port->write("\r"); // the line is not over, and not erased
    EXPECT_TRUE(shows(" on\r\n\r\x1b[K> kept\r\x1b[K\x1b[1A\r\x1b[7C\r\r\n\r\x1b[K> kept"));
    port->write("\tab\b\x1b[2C");
    EXPECT_TRUE(shows("\tab\b\x1b[2C\r\n"));
    port->write("!");
    EXPECT_TRUE(shows("\x1b[1A\r\x1b[11C!"));
    type("\x14/\x10\r");
    EXPECT_EQ(port->read(6), "hello\r");
    const QString strings = sandbox.path("data/tarnwick/monitor-strings");
    QDir().mkpath(QFileInfo(strings).path());
    file_write(strings, "of another session\n");
    ::kill(child, SIGTERM);
    EXPECT_EQ(exit_code(), 130);
    EXPECT_TRUE(terminal_is_restored());
    EXPECT_EQ(file_content(strings), "of another session\nfirst\nhello\n");
}

TEST_F(Monitor, AFileGoesOutWholeAndCanBeStopped)
{
    QByteArray content;
    for (int i = 0; i < 20000; ++i)
        content += QByteArray::number(i) + '\n';
    file_write(sandbox.path("file"), content);
    start({});
    type("\x14s" + sandbox.path("file").toLocal8Bit() + '\r');
    EXPECT_EQ(port->read(int(content.size())), content);
    EXPECT_TRUE(shows("file sent, " + QByteArray::number(content.size()) + " bytes"));
    screen.clear();
    type("\x14s\x10\r"); // the same name again; nobody reads, so that it can't end
    EXPECT_TRUE(shows("Ctrl-C stops"));
    type("\x03");
    EXPECT_TRUE(shows("stopped"));
    screen.clear();
    type("\x14s\x10\r\x03"); // typed ahead
    EXPECT_TRUE(shows("stopped"));
    type("\x14s/none\r");
    EXPECT_TRUE(shows("/none can't be read"));
}

TEST_F(Monitor, ThePortComesBackWithAllThatItSaid)
{
    start({});
    for (int i = 0; i < 10; ++i) {
        if (i % 2 == 0)
            port->unlink();
        port->hang_up();
        port->unlink();
        EXPECT_TRUE(shows("waiting for it")) << i;
        type("lost");
        EXPECT_TRUE(shows("until the port is back"));
        screen.clear();
        port = std::make_unique<Pty>();
        port->link_into(sandbox.ports_folder(), "adapter");
        port->write("token\n");
        EXPECT_TRUE(shows("is back") && shows("token")) << screen.constData();
        screen.clear();
        type("k");
        EXPECT_EQ(port->read(1), "k");
    }
}

TEST_F(Monitor, WaitsAtTheStartOrEndsWithThePort)
{
    port->unlink();
    EXPECT_EQ(run({}), 3);
    EXPECT_TRUE(err.contains("no such port")) << err.constData();
    EXPECT_EQ(run({"--wait", "--for", "0.1"}), 3);
    ASSERT_TRUE(QDir(sandbox.ports_folder()).removeRecursively());
    start({"--wait", "--no-reconnect"}, "waiting for adapter");
    EXPECT_TRUE(QDir().mkpath(sandbox.ports_folder()));
    port->link_into(sandbox.ports_folder(), "adapter");
    ASSERT_TRUE(shows("adapter is open"));
    port->hang_up();
    EXPECT_TRUE(shows("the link is lost"));
    EXPECT_EQ(exit_code(), 3);
    EXPECT_TRUE(terminal_is_restored());
}

} // namespace
