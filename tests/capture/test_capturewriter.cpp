// Recordings on disks that work, are full, or are slow.
#include "capture/capturequeue.h"
#include "capture/capturewriter.h"
#include "captures.h"
#include "print.h"
#include "sandbox.h"
#include "wait.h"

#include <QFile>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using testing::HasSubstr;
using Kind = CaptureReport::Kind;

constexpr std::chrono::milliseconds PATIENCE{PATIENCE_MS};

class CaptureWriterTest : public testing::Test
{
protected:
    const Sandbox sandbox;
    const QString path = sandbox.path("session.pcapng");
    std::mutex mutex;
    QList<CaptureReport> reports;

    CaptureWriter::Report keep = [this](const CaptureReport& report) {
        const std::lock_guard<std::mutex> lock(mutex);
        reports += report;
    };

    bool reported(Kind kind)
    {
        return wait_until([&] {
            const std::lock_guard<std::mutex> lock(mutex);
            return std::any_of(reports.begin(), reports.end(),
                               [&](const CaptureReport& report) { return report.kind == kind; });
        });
    }

    // Records so many bytes as pieces of 1000.
    static void record(CaptureWriter& writer, int size)
    {
        for (int i = 0; i < size; i += 1000)
            writer.record(CaptureRecord::received(i, QByteArray(1000, char(i / 1000))));
    }
};

QByteArray bytes_of(const QList<CaptureRecord>& records)
{
    QByteArray bytes;
    for (const CaptureRecord& record : records)
        bytes += record.bytes;
    return bytes;
}

std::int64_t lost_of(const QList<CaptureRecord>& records)
{
    std::int64_t lost = 0;
    for (const CaptureRecord& record : records)
        lost += record.lost;
    return lost;
}

TEST_F(CaptureWriterTest, KeepsTheOrderOfEachThread)
{
    CaptureWriter writer;
    ASSERT_TRUE(writer.open(path, {}));
    const auto talk = [&](const QString& name) {
        PcapngInterface port;
        port.name = name;
        const std::uint32_t number = writer.add_port(port);
        for (int i = 0; i < 2000; ++i) {
            CaptureRecord record = CaptureRecord::sent(i, QByteArray::number(i));
            record.port = number;
            writer.record(record);
        }
    };
    std::thread other(talk, "a");
    talk("b");
    other.join();
    EXPECT_TRUE(writer.flush(PATIENCE));
    EXPECT_TRUE(writer.close());

    QList<CaptureRecord> ports[2];
    for (const CaptureRecord& record : read_records(file_content(path)))
        ports[record.port] += record;
    for (const auto& records : ports) {
        ASSERT_EQ(records.size(), 2000);
        for (int i = 0; i < 2000; ++i)
            ASSERT_EQ(records[i].bytes, QByteArray::number(i));
    }
    EXPECT_EQ(tshark(path, "frame.number").size(), 4000);
}

TEST_F(CaptureWriterTest, IsInTheFileBeforeItIsClosed)
{
    CaptureWriter writer;
    ASSERT_TRUE(writer.open(path, {}));
    writer.add_port({});
    writer.record(CaptureRecord::received(1, QByteArray(150000, 'x')));
    EXPECT_TRUE(
        wait_until([&] { return bytes_of(read_records(file_content(path))).size() == 150000; }));
    for (const CaptureRecord& record : read_records(file_content(path)))
        EXPECT_LE(record.bytes.size(), 65536);
}

TEST_F(CaptureWriterTest, NeverOverwritesAFile)
{
    struct
    {
        const char* what;
        QByteArray before;
        CaptureExisting existing;
        const char* error;
        QStringList after; // when there is no error
    } const rows[] = {
        {"new", known_file(), CaptureExisting::Refuse, "is there already", {}},
        {"empty", "", CaptureExisting::Refuse, "", {"section Tarnwick"}},
        {"append to nothing", "", CaptureExisting::Append, "", {"section Tarnwick"}},
        {"append", known_file(), CaptureExisting::Append, "",
         read_lines(known_file()) + QStringList("section Tarnwick")},
        {"append to a torn file", known_file().left(430), CaptureExisting::Append, "",
         read_lines(known_file()).mid(0, 5) + QStringList("section Tarnwick")},
        {"append to a text", "some notes", CaptureExisting::Append, "is no capture", {}},
        {"append to an archive",
         "tar:" + known_file() + "end",
         CaptureExisting::Append,
         "is no capture",
         {}},
    };
    for (const auto& row : rows) {
        file_write(path, row.before);
        CaptureWriter writer;
        const CaptureResult result = writer.open(path, {}, row.existing);
        EXPECT_EQ(bool(result), *row.error == '\0') << row.what;
        EXPECT_THAT(result.error.toStdString(), HasSubstr(row.error)) << row.what;
        EXPECT_FALSE(result && CaptureWriter().open(path, {}, CaptureExisting::Append)) << row.what;
        writer.close();
        if (result)
            EXPECT_EQ(read_lines(file_content(path)), row.after) << row.what;
        else
            EXPECT_EQ(file_content(path), row.before) << row.what;
    }
}

TEST_F(CaptureWriterTest, SaysWhyAFileCannotBeOpened)
{
    file_write(sandbox.path("file"), "");
    struct
    {
        QString path;
        const char* error;
    } const rows[] = {
        {"/dev/full", "/dev/full can't be written: No space left on device"},
        {sandbox.path("no/such/folder"), "can't be created: No such file or directory"},
        {sandbox.path("file/below"), "can't be created: Not a directory"},
        {sandbox.path(""), "is a folder"},
    };
    for (const auto& row : rows) {
        const CaptureResult result = CaptureWriter().open(row.path, {});
        EXPECT_THAT(result.error.toStdString(), HasSubstr(row.error));
        EXPECT_FALSE(result.advice.isEmpty()) << row.error;
    }
}

TEST_F(CaptureWriterTest, GoesOnWhenAFullDiskHasRoomAgain)
{
    for (const std::size_t queue : {std::size_t(100000), CaptureWriter::QUEUE_BYTES}) {
        QFile::remove(path);
        reports.clear();
        CaptureWriter writer(keep, queue);
        ASSERT_TRUE(writer.open(path, {}));
        writer.add_port({});
        {
            const FullAt full(20000);
            record(writer, 500000);
            ASSERT_TRUE(reported(Kind::Failing));
            EXPECT_EQ(reports.last().path, path);
            EXPECT_EQ(reports.last().reason, "File too large");
            const QByteArray meanwhile = file_content(path);
            EXPECT_FALSE(read_lines(meanwhile).join(' ').contains("torn"));
            EXPECT_GT(meanwhile.size(), 18000);
        }
        ASSERT_TRUE(reported(Kind::Recovered));
        writer.record(CaptureRecord::remark(500001, "goes on"));
        const CaptureResult result = writer.close();
        const QList<CaptureRecord> records = read_records(file_content(path));
        EXPECT_EQ(bytes_of(records).size() + lost_of(records), 500000);
        EXPECT_EQ(std::int64_t(result.lost), lost_of(records));
        EXPECT_EQ(result.good, queue == CaptureWriter::QUEUE_BYTES);
        EXPECT_EQ(records.last().comment, "goes on");
    }
}

TEST_F(CaptureWriterTest, SaysAtItsEndWhatAFullDiskDidNotTake)
{
    CaptureWriter writer(keep);
    ASSERT_TRUE(writer.open(path, {}));
    writer.add_port({});
    const FullAt full(20000);
    record(writer, 50000);
    const CaptureResult result = writer.close();
    const QList<CaptureRecord> records = read_records(file_content(path));
    EXPECT_FALSE(result);
    EXPECT_EQ(bytes_of(records).size() + int(result.lost), 50000);
    EXPECT_THAT(result.error.toStdString(), HasSubstr("File too large"));
    EXPECT_FALSE(read_lines(file_content(path)).join(' ').contains("torn"));
}

TEST_F(CaptureWriterTest, NeverWaitsForADiskAndRecordsWhatItDropped)
{
    // A pipe that nobody reads is as slow as can be.
    ASSERT_EQ(mkfifo(path.toLocal8Bit(), 0600), 0);
    const int pipe = ::open(path.toLocal8Bit(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    CaptureWriter writer(keep, 100000);
    ASSERT_TRUE(writer.open(path, {}));
    writer.add_port({});
    record(writer, 1000000);
    ASSERT_TRUE(reported(Kind::Behind));
    writer.record(CaptureRecord::remark(1000001, "has room of its own"));

    QByteArray file;
    const auto drain = [&] {
        char piece[4096];
        const ssize_t size = ::read(pipe, piece, sizeof piece);
        file.append(piece, int(qMax<ssize_t>(size, 0)));
        return read_lines(file.right(300)).join(' ').contains("room of its own");
    };
    ASSERT_TRUE(wait_until(drain));
    ASSERT_TRUE(reported(Kind::CaughtUp));
    const QList<CaptureRecord> records = read_records(file);
    EXPECT_EQ(bytes_of(records).size() + lost_of(records), 1000000);
    std::int64_t told = 0;
    for (const CaptureReport& report : reports)
        told += std::int64_t(report.lost);
    EXPECT_EQ(told, lost_of(records));
    for (const CaptureRecord& record : records) {
        if (record.event != CaptureEvent::DataLost)
            continue;
        EXPECT_EQ(record.comment, QStringLiteral("%1 bytes in %2 records were not recorded: "
                                                 "the disk was too slow")
                                      .arg(record.lost)
                                      .arg(record.lost / 1000));
    }
    EXPECT_GT(told, 0);
    ::close(pipe);
}

TEST(CaptureQueue, TakesPortsWhenItIsFull)
{
    CaptureQueue queue(1000);
    while (!queue.put(CaptureRecord::remark(0, "x")))
        ;
    queue.put(PcapngInterface());
    std::vector<CaptureQueue::Entry> entries;
    ASSERT_TRUE(queue.take(entries, {}));
    EXPECT_TRUE(std::any_of(entries.begin(), entries.end(), [](const CaptureQueue::Entry& entry) {
        return std::holds_alternative<PcapngInterface>(entry);
    }));
}

} // namespace
