// The page of exchanges.
#include "workbench/exchangepage.h"
#include "workbenchtest.h"

#include <QClipboard>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>

class WorkbenchExchanges : public Workbench
{
protected:
    // The time-out only counts where no reply comes, or none of the length awaited.
    void device_start(const QString& command, const QString& frame, int timeout_ms = PATIENCE_MS)
    {
        configure("workbench/timeout", timeout_ms);
        module = std::make_unique<Simulated>(command);
        configure("workbench/link", "serial:" + module->address + ",115200,8N1");
        configure("workbench/frame", frame);
        page_open();
    }
    void page_open()
    {
        window_start();
        find<QTabWidget>("pages")->setCurrentWidget(&window->exchanges());
    }
    bool exchange(const QString& payload, int most = 256)
    {
        type("payload", payload);
        find<QSpinBox>("reply_most")->setValue(most);
        QTest::keyClick(find<QLineEdit>("payload"), Qt::Key_Return);
        return exchange_end();
    }
    bool exchange_end()
    {
        return wait_until([&] { return !window->exchanges().busy(); });
    }
    const ExchangeRecord& last() const
    {
        return window->exchanges().history().record(window->exchanges().history().rowCount() - 1);
    }
    QString said() const { return notice("exchange_notice"); }
    QString details() const { return find<QPlainTextEdit>("exchange_details")->toPlainText(); }
};

TEST_F(WorkbenchExchanges, ShowsRequestAndReplyAsPayloadAndOnTheWire)
{
    device_start("echo --delay 30", "crc16");
    ASSERT_TRUE(connect_module());
    ASSERT_TRUE(exchange("01 02", 2));
    EXPECT_TRUE(said().startsWith("Answered after ")) << qPrintable(said());
    ASSERT_EQ(last().wire.size(), 2);
    EXPECT_EQ(last().wire[0].bytes.toHex(), "010281e1");
    EXPECT_EQ(last().wire[1].bytes, last().wire[0].bytes);
    EXPECT_EQ(last().reply.toHex(), "0102");
    EXPECT_GE(last().wait_ms, 25);
    for (const char* const part :
         {"0.0 ms: sent on the wire, bytes: 4", "01 02 81 E1", "Reply after"})
        EXPECT_TRUE(details().contains(part)) << part << '\n' << qPrintable(details());

    find<QComboBox>("payload_kind")->setCurrentText("text");
    ASSERT_TRUE(exchange("AT\\r\\x00é", 6));
    EXPECT_EQ(last().reply.toHex(), "41540d00c3a9");
    auto* const table = find<QTableView>("exchange_table");
    table->selectRow(0);
    EXPECT_TRUE(details().startsWith("Request, bytes of payload: 2\n    01 02"));
    QTest::keyClick(table, Qt::Key_Return);
    EXPECT_EQ(text<QLineEdit>("payload"), "01 02");
    EXPECT_EQ(find<QComboBox>("payload_kind")->currentText(), "hexadecimal");
}

TEST_F(WorkbenchExchanges, TimesTheFirstByteOfAReplyOverTcp)
{
    device_start("echo --listen 0 --delay 30", "crc16", 1000);
    type("link_text", "tcp:127.0.0.1:" + module->address.section(':', -1));
    ASSERT_TRUE(connect_module());
    ASSERT_TRUE(exchange("01 02")); // fewer than may come, so the read waits for the time-out
    EXPECT_EQ(last().reply.toHex(), "0102") << qPrintable(said());
    EXPECT_GE(last().wait_ms, 25);
    EXPECT_LT(last().wait_ms, last().request.stack.timeout_ms);
}

TEST_F(WorkbenchExchanges, CopiesACommandThatDoesTheSame)
{
    device_start("echo", "chan:27");
    ASSERT_TRUE(connect_module());
    ASSERT_TRUE(exchange("41 27 5C", 3));
    click("exchange_copy");
    const QString command = QApplication::clipboard()->text();
    click("connect");
    ASSERT_TRUE(wait_until([&] { return text<QLabel>("connection_state") == "not connected"; }));
    ASSERT_TRUE(command.startsWith("tarnwickctl ")) << qPrintable(command);
    Program shell("sh", {"-c", TARNWICKCTL + command.mid(11)});
    EXPECT_EQ(shell.wait(), 0) << qPrintable(command);
    EXPECT_EQ(shell.out, "41 27 5C\n") << qPrintable(command);
}

TEST_F(WorkbenchExchanges, SaysWhyThereIsNoReply)
{
    const struct
    {
        const char* device;
        const char* frame;
        const char* sentence;
        const char* row;
    } rows[] = {
        {"echo --silent-after 0", "crc16", "Nothing came within 1000 ms: is the device on?",
         "nothing in time"},
        {"echo --corrupt 1", "crc16", "What came is no frame of crc16", "no frame"},
        {"cnet", "cnet:1234", "The frame could not be sent", "not sent"},
    };
    for (const auto& row : rows) {
        device_start(row.device, row.frame, 1000);
        ASSERT_TRUE(connect_module());
        ASSERT_TRUE(exchange("01 02 03"));
        EXPECT_TRUE(said().startsWith(row.sentence)) << row.sentence << qPrintable(said());
        EXPECT_EQ(window->exchanges().history().index(0, ExchangeTable::REPLY).data(), row.row);
        EXPECT_EQ(text<QLabel>("connection_state"), "connected");
        window.reset();
        module.reset();
    }
}

TEST_F(WorkbenchExchanges, SurvivesALinkThatGoesInTheMiddle)
{
    device_start("echo --silent-after 0", "none");
    ASSERT_TRUE(connect_module());
    type("payload", "01 02");
    click("send");
    ASSERT_TRUE(window->exchanges().busy());
    type("firmware_file", sandbox.path("M1_2.bin"));
    const char* const others[][2] = {{"start", "firmware_notice"},
                                     {"settings_read_all", "settings_notice"},
                                     {"search_start", "search_notice"}};
    for (int page = 0; page < 3; ++page) {
        find<QTabWidget>("pages")->setCurrentIndex(page);
        click(others[page][0]);
        EXPECT_TRUE(notice(others[page][1]).startsWith("The link works for another page"));
    }
    yes = false;
    window->close();
    EXPECT_TRUE(window->isVisible() && window->exchanges().busy());
    EXPECT_EQ(questions, 1);
    module->process.kill();
    ASSERT_TRUE(exchange_end());
    EXPECT_TRUE(said().contains("has gone") || said().contains("is lost")) << qPrintable(said());
    ASSERT_TRUE(wait_until([&] { return text<QLabel>("connection_state") == "not connected"; }));
    EXPECT_EQ(text<QLineEdit>("payload"), "01 02");
    EXPECT_EQ(window->exchanges().history().rowCount(), 1);
    click("send");
    EXPECT_EQ(said(), "There is no link to a device: connect first.");
}

TEST_F(WorkbenchExchanges, SaysBadInputInOneSentenceAndKeepsIt)
{
    page_open();
    const struct
    {
        const char* kind;
        QString typed;
        const char* sentence;
    } rows[] = {
        {"hexadecimal", "", "There is nothing to send"},
        {"hexadecimal", "01 2", "Payload, character 4: a byte has two hexadecimal digits."},
        {"text", "AT\\q", "Payload, character 3: an escape is one of"},
        {"text", QString(65537, 'x'), "A payload has at most 65536 bytes, not 65537."},
        {"text", "AT\\r", "There is no link to a device: connect first."},
    };
    for (const auto& row : rows) {
        find<QComboBox>("payload_kind")->setCurrentText(row.kind);
        type("payload", row.typed);
        click("send");
        EXPECT_TRUE(said().startsWith(row.sentence)) << row.sentence << ": " << qPrintable(said());
    }
    window->close();
    window.reset();
    page_open();
    EXPECT_EQ(text<QLineEdit>("payload"), "AT\\r");
    EXPECT_EQ(find<QComboBox>("payload_kind")->currentText(), "text");
}
