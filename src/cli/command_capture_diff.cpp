// tarnwickctl capture diff: the first exchange in which two sessions differ.
#include "cli/capturedframes.h"
#include "cli/typedargument.h"
#include "stack/typedtext.h"

#include <deque>

namespace {

constexpr int LOOK_AHEAD = 64; // frames that one session may have more in one place

// What --ignore names.
struct Ignored
{
    explicit Ignored(const Invocation& invocation);
    bool leaves_out(const CaptureRecord& record, const QByteArray& payload) const;
    QByteArray without_ignored(QByteArray payload) const;

    bool sent = false;
    bool received = false;
    bool events = false;
    QVector<QByteArray> beginnings;
    QVector<QPair<int, int>> positions; // first and last byte
};

Ignored::Ignored(const Invocation& invocation)
{
    const QString advice = "Give sent, received, events, bytes:FROM-TO or hex:BEGINNING.";
    for (const QString& text : invocation.texts("ignore")) {
        const QStringList ends = text.mid(6).split('-');
        if (text == "sent" || text == "received" || text == "events") {
            (text == "sent" ? sent : text == "received" ? received : events) = true;
        } else if (text.startsWith("hex:")) {
            const auto parse = [](const QString& hex) { return parse_hex_bytes(hex); };
            beginnings.append(parse_argument("--ignore", text.mid(4), parse, advice));
        } else if (text.startsWith("bytes:") && ends.size() <= 2) {
            const auto first = number_in(ends.first(), 0, 65535);
            const auto last = number_in(ends.last(), first.value_or(0), 65535);
            if (!first || !last)
                throw usage_failure("--ignore " + text + " is no range of bytes", advice);
            positions.append({int(*first), int(*last)});
        } else {
            throw usage_failure("--ignore " + text + " is unknown", advice);
        }
    }
}

bool Ignored::leaves_out(const CaptureRecord& record, const QByteArray& payload) const
{
    if (record.event == CaptureEvent::StatusChange)
        return true;
    if (record.event == CaptureEvent::DataSent || record.event == CaptureEvent::DataReceived) {
        const auto begins = [&](const QByteArray& beginning) {
            return payload.startsWith(beginning);
        };
        return (record.event == CaptureEvent::DataSent ? sent : received) ||
               std::any_of(beginnings.begin(), beginnings.end(), begins);
    }
    return events;
}

QByteArray Ignored::without_ignored(QByteArray payload) const
{
    for (const auto& [first, last] : positions)
        for (int i = first; i <= last && i < payload.size(); ++i)
            payload[i] = '\0';
    return payload;
}

struct Compared
{
    NumberedRecord frame;
    QByteArray key; // what must be equal
    QString shown;
};

// One of the two sessions, with a few frames ahead.
class Session
{
public:
    Session(const Invocation& invocation, const QString& name, const Ignored& ignored)
        : capture(invocation, name)
        , frames(invocation, capture)
        , ignored(ignored)
    {
    }

    // Null past the end.
    const Compared* at(int index)
    {
        while (int(ahead.size()) <= index)
            if (!read_one())
                return nullptr;
        return &ahead[std::size_t(index)];
    }

    void pass()
    {
        if (ahead.front().frame.record.event == CaptureEvent::DataSent)
            request = ahead.front();
        ahead.pop_front();
    }

    std::optional<Compared> request; // the last that was passed

private:
    bool read_one()
    {
        while (auto frame = frames.next()) {
            const FrameVerdict verdict = frames.check(*frame);
            const QByteArray payload = verdict.good ? verdict.payload : frame->record.bytes;
            if (ignored.leaves_out(frame->record, payload))
                continue;
            Compared compared;
            const QByteArray head =
                QByteArray::number(int(frame->record.event)) + (verdict.good ? " good " : " bad ");
            compared.key = head + ignored.without_ignored(payload);
            compared.shown = time_text(frame->record.time_ns) + ' ' + record_text(frame->record);
            if (frames.framed())
                compared.shown += "  | " + verdict.text;
            compared.frame = *std::move(frame);
            ahead.push_back(std::move(compared));
            return true;
        }
        return false;
    }

    CapturedFile capture;
    CapturedFrames frames;
    const Ignored& ignored;
    std::deque<Compared> ahead;
};

// How many frames `longer` has more here until it goes on like `other`; 0 when it doesn't.
int surplus(Session& longer, Session& other)
{
    const Compared* const next = other.at(0);
    const Compared* const after = other.at(1);
    for (int more = 1; next && more <= LOOK_AHEAD && longer.at(more); ++more) {
        const Compared* const second = longer.at(more + 1);
        if (longer.at(more)->key == next->key && (!after || (second && second->key == after->key)))
            return more;
    }
    return 0;
}

void show(const Invocation& invocation, const char* whose, const Compared* frame)
{
    invocation.console.line(QStringLiteral("  %1 ").arg(whose) +
                            (frame ? frame->shown : QString("ends here")));
}

QJsonValue frame_json(const Compared* frame)
{
    return frame ? QJsonValue(record_json(frame->frame)) : QJsonValue();
}

// Shows the difference that the sessions are at, and returns how they differ.
QString show_difference(const Invocation& invocation, Session& a, Session& b)
{
    if (a.request)
        show(invocation, " ", &*a.request);
    const int more_in_a = surplus(a, b);
    const int more_in_b = surplus(b, a);
    for (int i = 0; i < std::max(1, more_in_a) && (more_in_b == 0 || more_in_a > 0); ++i)
        show(invocation, "A", a.at(i));
    for (int i = 0; i < std::max(1, more_in_b) && more_in_a == 0; ++i)
        show(invocation, "B", b.at(i));
    if (more_in_a > 0)
        return "A has " + counted(std::uint64_t(more_in_a), "frame") + " more there";
    if (more_in_b > 0)
        return "B has " + counted(std::uint64_t(more_in_b), "frame") + " more there";
    return a.at(0) && b.at(0) ? "one frame is another"
                              : QString(a.at(0) ? "B ends there" : "A ends there");
}

void run_diff(Invocation& invocation)
{
    invocation.expect_at_most(2);
    const Ignored ignored(invocation);
    const QString names[] = {invocation.argument(0, "A"), invocation.argument(1, "B")};
    Session a(invocation, names[0], ignored);
    Session b(invocation, names[1], ignored);
    qint64 equal = 0;
    for (; a.at(0) && b.at(0) && a.at(0)->key == b.at(0)->key; ++equal) {
        a.pass();
        b.pass();
    }
    if (!a.at(0) && !b.at(0)) {
        invocation.console.line("no difference in " + counted(std::uint64_t(equal), "frame"));
        invocation.console.result({{"same", true}, {"equal_frames", equal}});
        return;
    }
    invocation.console.line("the same for " + counted(std::uint64_t(equal), "frame") + ", then:");
    const QString how = show_difference(invocation, a, b);
    throw Failure{ExitCode::Refused,
                  QStringLiteral("%1 (A) and %2 (B) differ after %3: %4")
                      .arg(names[0], names[1], counted(std::uint64_t(equal), "frame"), how),
                  {},
                  {{"same", false},
                   {"equal_frames", equal},
                   {"how", how},
                   {"a", frame_json(a.at(0))},
                   {"b", frame_json(b.at(0))}}};
}

} // namespace

QList<Command> capture_diff_commands()
{
    QList<QCommandLineOption> options = selection_options() + frame_options();
    options.append(QCommandLineOption(
        "ignore",
        "Leave out sent, received or events (errors, breaks, lost bytes), bytes:FROM-TO of each "
        "payload, counted from 0, or frames that begin with hex:BYTES. May be given several times.",
        "what"));
    return {{"capture diff", "A B", "Show the first exchange in which two sessions differ.",
             "Compares two captures frame by frame, whatever their times are, and shows the first\n"
             "exchange in which they differ: the last request, and what came then in each.\n\n"
             "  tarnwickctl capture diff good.pcapng bad.pcapng --frame crc16\n"
             "  tarnwickctl capture diff good.pcapng bad.pcapng --ignore bytes:2-3 --ignore hex:0A",
             options, Needs::Nothing, run_diff}};
}
