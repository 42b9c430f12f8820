// replay and answer: devices made of captures.
#include "devices/answering.h"
#include "devices/exchange.h"
#include "devices/replay.h"
#include "simulated.h"
#include "wire.h"

#include <gmock/gmock.h>

namespace {
using testing::ElementsAre;
using testing::HasSubstr;
using namespace std::chrono_literals;

struct Event
{
    int ms;
    char kind; // '>' sent, '<' received, '!' lost
    const char* text;
    std::uint32_t port = 0;
};

QByteArray capture_of(const std::vector<Event>& events)
{
    QByteArray file = PcapngSection().build();
    for (const char* name : {"/dev/ttyUSB0", "/dev/ttyUSB1"}) {
        PcapngInterface port;
        port.name = name;
        file += port.build();
    }
    for (const Event& event : events) {
        const std::int64_t time_ns = 1'000'000'000'000'000 + event.ms * std::int64_t(1'000'000);
        CaptureRecord record = event.kind == '>' ? CaptureRecord::sent(time_ns, event.text)
                                                 : CaptureRecord::received(time_ns, event.text);
        if (event.kind == '!') {
            record = CaptureRecord::remark(time_ns, {});
            record.event = CaptureEvent::DataLost;
            record.lost = 1;
        }
        record.port = event.port;
        file += packet_of(record).build();
    }
    return file;
}

class Recordings : public ProgramTest
{
protected:
    QString file = sandbox.path("session.pcapng");
    QString notes;
    const Journal journal = [this](const QString& text) { notes += text + '\n'; };

    // What is answered to each of the requests, the line silent after it, in text or at "ms:".
    QByteArrayList answers(const std::vector<Event>& recorded, const QByteArrayList& requests,
                           const AnswerSettings& settings)
    {
        file_write(file, capture_of(recorded));
        CapturedPort port(file, {}, journal);
        ExchangeSettings exchange;
        exchange.pause = settings.gap;
        Exchange device(std::make_unique<Answering>(port, settings, journal), exchange, {});
        QByteArrayList heard;
        Time now{};
        for (const QByteArray& request : requests) {
            const Time begin = now;
            device.receive(request, now);
            device.line_idle(now);
            QByteArray answer;
            for (Time end = now + 1s; now < end; now += 1ms) {
                device.line_idle(now);
                const QByteArray bytes = device.transmit(100, now);
                if (settings.delays && !bytes.isEmpty())
                    answer += QByteArray::number(qint64((now - begin) / 1ms)) + ":";
                answer += bytes;
            }
            heard += answer;
        }
        return heard;
    }

    // "ms text" for each piece; the listener is away between the two times.
    QByteArrayList replayed(const std::vector<Event>& recorded, const ReplaySettings& settings,
                            std::chrono::milliseconds gone = 0ms,
                            std::chrono::milliseconds back = 0ms)
    {
        file_write(file, capture_of(recorded));
        Replay device(std::make_unique<CapturedPort>(file, QString(), journal), settings, {},
                      journal);
        QByteArrayList pieces;
        const Time start{};
        for (Time now = start; device.next_wake(now) != NEVER;) {
            const QByteArray bytes = device.transmit(3, now);
            if (!bytes.isEmpty())
                pieces += QByteArray::number(qint64((now - start) / 1ms)) + ' ' + bytes;
            now = device.next_wake(now);
            if (now - start > gone && now - start < back)
                now = start + back;
        }
        return pieces;
    }
};

TEST_F(Recordings, EachRequestGetsTheAnswerOfTheRecordedDevice)
{
    const std::vector<Event> plain = {
        {0, '>', "who"}, {20, '<', "m"}, {50, '<', "e"}, {900, '>', "how"}, {901, '<', "so"}};
    const std::vector<Event> twice = {
        {0, '>', "who"}, {1, '<', "me"}, {9, '>', "who"}, {10, '<', "you"}};
    AnswerSettings near, delays;
    near.near = true;
    delays.delays = true;
    struct
    {
        const char* what;
        std::vector<Event> recorded;
        QByteArrayList requests;
        QByteArrayList answers;
        const char* note = "";
        AnswerSettings settings = {};
    } const rows[] = {
        {"plain", plain, {"how", "who", "why"}, {"so", "me", ""}, "no answer: 77 68 79\n"},
        {"at once", plain, {"whohow", "who\r"}, {"meso", "me"}, "no answer: 0D"},
        {"with the recorded delays", plain, {"who"}, {"20:m50:e"}, "", delays},
        {"the nearest", plain, {"whx", "h"}, {"me", "so"}, "differs in 1 bytes: 77 68 6F", near},
        {"in order, and anew", twice, {"who", "who", "who"}, {"me", "you", "me"}},
        {"written in pieces",
         {{0, '>', "w"}, {50, '>', "ho"}, {60, '<', "me"}},
         {"who", "w"},
         {"me", ""}},
        {"repeated after a time-out",
         {{0, '>', "who"}, {500, '>', "who"}, {501, '<', "me"}},
         {"who", "who", "who"},
         {"", "me", ""}},
        {"one begins as the other does",
         {{0, '>', "a"}, {1, '<', "1"}, {2, '>', "ab"}, {3, '<', "2"}},
         {"ab", "a", "aab"},
         {"2", "1", "12"}},
        {"the answer is ahead in the file",
         {{1, '>', "x"}, {7, '<', "me"}, {5, '>', "who"}},
         {"who", "x"},
         {"", ""},
         "unknown, no answer: 77 68 6F"},
        {"bytes are missing",
         {{0, '>', "who"}, {1, '!', ""}, {2, '<', "e"}, {9, '>', "how"}, {10, '<', "so"}},
         {"who", "how"},
         {"", "so"},
         "1 requests are left out"},
        {"before all requests", {{0, '<', "hi"}, {1, '>', "who"}}, {"who"}, {""}, "2 received"},
    };
    for (const auto& row : rows) {
        notes.clear();
        EXPECT_EQ(answers(row.recorded, row.requests, row.settings), row.answers) << row.what;
        EXPECT_TRUE(notes.contains(row.note)) << row.what << ": " << notes.toStdString();
    }
}

TEST_F(Recordings, WhatWasReceivedComesAgainAtItsTimes)
{
    const std::vector<Event> events = {
        {0, '>', "open"}, {10, '<', "one"}, {30, '<', "two"}, {20, '>', "x"}, {2030, '<', "three"}};
    ReplaySettings twice, no_pace, short_silence;
    twice.speed = 2;
    no_pace.speed = 0;
    short_silence.most_silence = 100ms;
    EXPECT_THAT(replayed(events, {}), ElementsAre("10 one", "30 two", "2030 thr", "2030 ee"));
    EXPECT_THAT(replayed(events, twice), ElementsAre("5 one", "15 two", "1015 thr", "1015 ee"));
    EXPECT_THAT(replayed(events, no_pace), ElementsAre("0 one", "0 two", "0 thr", "0 ee"));
    EXPECT_THAT(replayed(events, short_silence),
                ElementsAre("10 one", "30 two", "130 thr", "130 ee"));
    EXPECT_THAT(replayed(events, {}, 20ms, 1000ms),
                ElementsAre("10 one", "1000 two", "3000 thr", "3000 ee"));
    // The clock was set back by an hour after the first piece.
    EXPECT_THAT(replayed({{3600000, '<', "a"}, {10, '<', "b"}, {40, '<', "c"}}, {}),
                ElementsAre("0 a", "0 b", "30 c"));
    EXPECT_TRUE(notes.contains("the end of"));
    EXPECT_FALSE(notes.contains("silence"));
    replayed({{0, '<', "a"}, {3600000, '<', "b"}}, {});
    EXPECT_TRUE(notes.contains("a silence of 3600 s"));
}

TEST_F(Recordings, SaysWhyACaptureIsNoDevice)
{
    const QByteArray two_ports = capture_of({{0, '<', "a"}, {1, '>', "b", 1}});
    file_write(file, two_ports);
    file_write(sandbox.path("text"), "just text");
    file_write(sandbox.path("empty"), capture_of({}));
    file_write(sandbox.path("lost"), capture_of({{0, '>', "a"}, {1, '!', ""}, {2, '<', "b"}}));
    const std::tuple<QString, int, const char*> rows[] = {
        {"replay " + file, 1, "choose one with --port: /dev/ttyUSB0, /dev/ttyUSB1"},
        {"replay --port ttyUSB2 " + file, 1, "no port \"ttyUSB2\""},
        {"replay --port ttyUSB1 " + file, 1, "nothing was received from /dev/ttyUSB1"},
        {"answer --port ttyUSB0 " + file, 1, "nothing was sent to /dev/ttyUSB0"},
        {"replay " + sandbox.path("text"), 1, "is no capture"},
        {"replay " + sandbox.path("none"), 1, "can't be read: No such file"},
        {"replay " + sandbox.path("empty"), 1, "holds no bytes"},
        {"answer --near " + sandbox.path("lost"), 1, "missing in each request"},
        {"replay", 2, "name the capture"},
        {"replay --speed 0.0001 " + file, 2, "from 0.001"},
        {"echo " + file, 2, "unexpected"},
    };
    for (const auto& [command, exit, error] : rows) {
        Simulated refused(command);
        EXPECT_EQ(refused.wait(), exit) << qPrintable(command);
        EXPECT_THAT(refused.err.toStdString(), HasSubstr(error));
    }
}

TEST_F(Recordings, WhatIsGoodOfADamagedCaptureIsPlayed)
{
    file_write(file, capture_of({{0, '>', "who"}, {1, '<', "me"}, {2, '>', "how"}}).chopped(5));
    Simulated replay("replay --listen 0 " + file);
    EXPECT_EQ(Wire(replay.address).read(2), "me");
    EXPECT_TRUE(replay.says("1 damaged places")) << replay.err.toStdString();
    EXPECT_TRUE(replay.says("the end of")) << replay.err.toStdString();
    Simulated answer("answer --verbose " + file);
    EXPECT_EQ(Wire(answer.address).exchange("who", 2), "me");
    EXPECT_TRUE(answer.says("< 77 68 6f")) << answer.err.toStdString();
}
} // namespace
