#include "links/tcpip_cfg.h"
#include "stack/frameparts.h"
#include "workbench/cellgrid.h"
#include "workbench/firmwarefile.h"
#include "workbench/language.h"
#include "workbench/linkchoice.h"
#include "workbench/pagemappainter.h"
#include "workbench/transfer.h"
#include "workbench/upgradeverdict.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QProcess>
#include <QXmlStreamReader>
#include <gtest/gtest.h>
#include <print.h>
#include <sandbox.h>
#include <set>
#include <wait.h>

TEST(PageMap, KnowsThePageOfEachOffsetAndTheBytesOfEachPage)
{
    const struct
    {
        int size, page_size, pages, last_bytes;
    } rows[] = {{1, 4096, 1, 1},
                {4096, 4096, 1, 4096},
                {4097, 4096, 2, 1},
                {10000, 4096, 3, 1808},
                {0, 4096, 0, 0},
                {500, 0, 0, 0},
                {0x7FFFFFFF, 0xFFFF, 32769, 0x7FFF}};
    for (const auto& row : rows) {
        PageMap map(row.size, row.page_size);
        ASSERT_EQ(map.count(), row.pages) << row.size;
        EXPECT_EQ(map.page_at(std::uint32_t(row.size)), -1);
        map.set(std::uint32_t(row.size), PageState::Failed);
        EXPECT_EQ(map.count_of(PageState::Unknown), row.pages);
        if (row.pages == 0)
            continue;
        const int last = row.pages - 1;
        EXPECT_EQ(map.bytes(last), row.last_bytes) << row.size;
        EXPECT_EQ(map.page_at(std::uint32_t(row.size) - 1), last);
        map.set(std::uint32_t(map.offset(last)), PageState::Sent);
        EXPECT_EQ(map.state(last), PageState::Sent);
    }
}

TEST(PageMap, CellsFillTheAreaAndEachIsFoundAtItsPlace)
{
    for (const int count : {1, 7, 64, 1000, 32769}) {
        const CellGrid grid(count, QSize(301, 140));
        EXPECT_TRUE(grid.height() <= 140 || grid.cell_size() == CellGrid::SMALLEST);
        for (const int cell : {0, count / 2, count - 1}) {
            EXPECT_EQ(grid.cell_at(grid.cell(cell).center()), cell);
            EXPECT_LE(grid.cell(cell).right(), 301);
        }
        EXPECT_EQ(grid.cell_at(QPoint(300, grid.height() + 1)), -1);
        EXPECT_EQ(grid.cell_at(QPoint(-1, 0)), -1);
    }
}

TEST(PageMap, EachStateHasAColourOfItsOwnOnBothGrounds)
{
    for (const QRgb ground : {0xFFFFFFFF, 0xFF202020}) {
        QPalette palette;
        palette.setColor(QPalette::Base, ground);
        std::set<QRgb> colours;
        PageMap map(PAGE_STATES, 1);
        for (int page = 0; page < PAGE_STATES; ++page)
            map.set(std::uint32_t(page), PageState(page));
        const CellGrid grid(map.count(), QSize(200, 30));
        QImage image(200, 30, QImage::Format_RGB32);
        image.fill(ground);
        QPainter painter(&image);
        paint_page_map(painter, image.rect(), grid, map, palette);
        for (int page = 0; page < PAGE_STATES; ++page)
            colours.insert(image.pixel(grid.cell(page).topLeft() + QPoint(1, 1)));
        EXPECT_EQ(colours.size(), std::size_t(PAGE_STATES));
        EXPECT_EQ(colours.count(ground), 0u);
    }
}

TEST(Transfer, ShowsBytesRateAndTimeLeft)
{
    const struct
    {
        Transfer transfer;
        const char* text;
    } rows[] = {
        {{{0, 0, 0}}, ""},
        {{{0, 1000, 500}}, "0 of 1000 bytes"},
        {{{500, 1000, 100}}, "500 of 1000 bytes"},
        {{{131072, 262144, 12000}}, "131072 of 262144 bytes, 10.9 KB/s, 0:12 left"},
        {{{1000, 100000, 2000}}, "1000 of 100000 bytes, 500 B/s, 3:18 left"},
        {{{1000, 1000, 2000}}, "1000 of 1000 bytes, 500 B/s"},
        {{{500, 1000, 1000}, true}, "500 of 1000 bytes, 500 B/s"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.transfer.text(), row.text);
}

TEST(FirmwareFile, SaysInASentenceWhyItCannotBeSent)
{
    const Sandbox sandbox;
    const QString large = sandbox.path("large.bin");
    file_write(large, {});
    QFile::resize(large, FirmwareFile::LARGEST + 1);
    file_write(sandbox.path("empty.bin"), {});
    file_write(sandbox.path("good.bin"), "x");
    const struct
    {
        QString path;
        const char* problem;
    } rows[] = {{"", "Choose a firmware file first"},
                {sandbox.path("none"), "There is no file"},
                {sandbox.path(""), "is no file"},
                {sandbox.path("empty.bin"), "is empty"},
                {large, "is too large"},
                {sandbox.path("good.bin"), ""}};
    for (const auto& row : rows) {
        const FirmwareFile file(row.path);
        EXPECT_TRUE(file.problem().contains(row.problem)) << qPrintable(file.problem());
        EXPECT_EQ(file.usable(), *row.problem == '\0');
    }
}

TEST(UpgradeVerdict, SaysWhatHappenedAndWhatToDo)
{
    const auto report = [](LoaderEnding ending, LoaderReason reason, LinkTrouble link) {
        UpgradeReport report;
        report.outcome.ending = ending;
        report.outcome.reason = reason;
        report.outcome.module_name = "M7";
        report.link = {link, "/dev/x"};
        return report;
    };
    UpgradeReport refused =
        report(LoaderEnding::SendFailed, LoaderReason::PacketRefused, LinkTrouble::NoAnswer);
    refused.outcome.refusals = 5;
    using E = LoaderEnding;
    using R = LoaderReason;
    using T = LinkTrouble;
    const struct
    {
        UpgradeReport report;
        const char* what;
        const char* next;
    } rows[] = {
        {report(E::Upgraded, R::None, T::NoAnswer), "holds all", "restarted"},
        {report(E::Upgraded, R::None, T::ConnectionLost), "holds all", "off and on"},
        {report(E::Aborted, R::NoReply, T::PortGone), "was stopped", "Start again"},
        {report(E::WrongFirmware, R::None, T::NoAnswer), "not for the module M7", "underscore"},
        {report(E::NoInfo, R::NoReply, T::NoAnswer), "doesn't say what it is", "the rate"},
        {report(E::NoInfo, R::NoReply, T::PortGone), "/dev/x has gone", "Start again"},
        {report(E::NotInBoot, R::None, T::NoAnswer), "boot code", "5000 ms"},
        {report(E::SendFailed, R::NoReply, T::ConnectionLost), "is lost", "Start again"},
        {report(E::SendFailed, R::NoReply, T::NoAnswer), "no reply came", "length of 256"},
        {refused, "refused all 5", "larger than the module's memory"},
        {report(E::VerifyFailed, R::CrcDiffers, T::NoAnswer), "differs from the file", "boot code"},
        {report(E::FileNotRead, R::FileCutShort, T::NoAnswer), "to its end", "another one"},
    };
    for (const auto& row : rows) {
        const UpgradeVerdict verdict = upgrade_verdict(row.report, "M1_1.bin", UpgradeSettings());
        EXPECT_TRUE(verdict.what.contains(row.what)) << qPrintable(verdict.what);
        EXPECT_TRUE(verdict.next.contains(row.next)) << qPrintable(verdict.next);
        EXPECT_EQ(verdict.good, row.report.outcome.ending == E::Upgraded);
    }
}

TEST(LinkChoice, TakesWhatALinkCanDoAndWritesItAsText)
{
    const struct
    {
        int protocol;
        const char* address;
        const char* text; // empty: refused
    } rows[] = {{TCPIP_TCP_CLIENT, "10.0.0.5", "tcp:10.0.0.5:4001"},
                {TCPIP_TCP_CLIENT, "fe80::1%1", "tcp:[fe80::1%1]:4001"},
                {TCPIP_UDP, "gateway", "udp:gateway:4001"},
                {TCPIP_UDP_BROADCAST, "", "broadcast:4001"},
                {TCPIP_TCP_CLIENT, " ", ""},
                {TCPIP_TCP_SERVER, "10.0.0.5", ""},
                {-1, "10.0.0.5", ""}};
    for (const auto& row : rows) {
        tcpip_cfg settings = tcpip_defaults();
        settings.protocol = row.protocol;
        qstrncpy(settings.addr, row.address, sizeof settings.addr);
        const LinkChoice choice = network_choice(settings);
        ASSERT_EQ(choice.problem.isEmpty(), *row.text != '\0') << row.text;
        if (!choice.problem.isEmpty())
            continue;
        EXPECT_EQ(link_text(choice.link), row.text);
        EXPECT_EQ(link_text(parse_link(QString(row.text))), row.text);
    }
}

TEST(StackText, IsTakenAsItIsWrittenAndShowsTheFrameInParts)
{
    const struct
    {
        const char* framers;
        const char* parts; // of the payload 61 02
    } rows[] = {{"none", "6102"},
                {"crc16", "6102 a9e1"},
                {"rtu:1", "01 6102 8851"},
                {"crc16+chan:05", "05 6102 c990"},
                {"chan:1234", "1234 6102"},
                {"rwlt", "ab 6102 ba"},
                {"cnet:1234", "aa05d11234 6102 55"}};
    for (const auto& row : rows) {
        const auto framers = parse_framers(QString(row.framers));
        EXPECT_EQ(framers_text(framers), row.framers);
        QByteArray shown;
        QByteArray frame;
        for (const FramePart& part : frame_parts(framers, "\x61\x02")) {
            shown += (shown.isEmpty() ? "" : " ") + part.bytes.toHex();
            frame += part.bytes;
        }
        EXPECT_EQ(shown, row.parts) << row.framers;
    }
    for (const char* const link : {"serial:/dev/ttyUSB0,9600,8E1", "serial:COM3,300,5N1.5,xonxoff",
                                   "rawtcp:10.0.0.5:1", "udp:[::1]:65535"})
        EXPECT_EQ(link_text(parse_link(QString(link))), link);
}

TEST(Language, FollowsTheDesktop)
{
    EXPECT_EQ(Language::of_desktop({"zh-Hans-CN", "en-US"}), "zh_CN");
    EXPECT_EQ(Language::of_desktop({"fr-FR", "zh-TW", "en"}), "zh_CN");
    EXPECT_EQ(Language::of_desktop({"de-DE", "en-GB", "zh"}), "en_US");
    EXPECT_EQ(Language::of_desktop({"fr-FR"}), "en_US");
}

namespace {
// The source texts of a catalogue that have a translation, or with `all` those without one too.
std::set<QString> texts_of(const QString& path, bool all)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    QXmlStreamReader xml(&file);
    std::set<QString> texts;
    QString context;
    QString source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QString("name"))
            context = xml.readElementText();
        else if (xml.name() == QString("source"))
            source = xml.readElementText();
        else if (xml.name() == QString("translation") &&
                 (all || !xml.attributes().hasAttribute("type")))
            texts.insert(context + ": " + source);
    }
    return texts;
}
} // namespace

TEST(Language, EveryTextOfTheWindowIsInChineseToo)
{
    const Sandbox sandbox;
    const QString folder = SOURCE_FOLDER;
    QProcess lupdate;
    lupdate.start(LUPDATE, {"-silent", "-I", folder, "-extensions", "h,cpp", folder + "/workbench",
                            folder + "/stack", "-ts", sandbox.path("collected.ts")});
    ASSERT_TRUE(lupdate.waitForFinished(PATIENCE_MS));
    const auto collected = texts_of(sandbox.path("collected.ts"), true);
    EXPECT_GT(collected.size(), 150u);
    EXPECT_EQ(collected, texts_of(folder + "/resources/language/workbench_zh_CN.ts", false));
}
