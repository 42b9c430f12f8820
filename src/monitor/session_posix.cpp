#include "monitor/session.h"

#include "serialport/qextserialport.h"

#include <algorithm>
#include <csignal>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace {
// Shown in one go, so that keys are looked after in between while a flood comes in.
constexpr int BATCH = 256 * 1024;
// More waits in the system than a port takes at once.
constexpr int INPUT_AHEAD = 4096;
// A connection that ends sooner is not made again at once, or two programs would be busy with it.
constexpr std::int64_t SHORT_LIVED_NS = NS_PER_S;
constexpr std::int64_t LONGEST_WAIT_NS = 3600 * NS_PER_S;

pollfd watched(int descriptor, short events, bool wanted)
{
    return {wanted ? descriptor : -1, events, 0};
}
} // namespace

Session::Session(Wire& wire, const SessionOptions& options)
    : wire(wire)
    , options(options)
    , recorder(inbox)
    , queue(options.pacing)
    , script(options.script)
    , key_reader(options.prefix)
    , ending(options.ending.value_or(LineEnding::Cr))
{
    reader_settings.framers = options.framers;
    reader_settings.timeout_ms = options.timeout_ms;
    reader_settings.order = &recorder.order;
    if (options.view.gap_ns > 0)
        reader_settings.gap_ms = int(std::max(std::int64_t(1), options.view.gap_ns / NS_PER_MS));
    if (!options.record.path.isEmpty())
        reader_settings.record = [this](const Chunk& chunk) { recorder.record(chunk); };
    for (const QString& text : options.strings)
        sent_strings.add(text);
}

Session::~Session() = default;

SessionResult Session::run()
{
    if (begin()) {
        while (!ended)
            turn();
    }
    return finish();
}

bool Session::begin()
{
    std::unique_ptr<LogFile> log;
    if (!options.log.isEmpty()) {
        log = std::make_unique<LogFile>(options.log, options.rotation);
        if (!log->open(QDateTime::currentDateTime())) {
            end_with(SessionEnd::FileFailed, "the log " + log->name() + ": " + log->fault(),
                     "Check that its folder is there, and your rights to it.");
            return false;
        }
    }
    output = std::make_unique<Output>(screen, options.view, std::move(log));
    const CaptureResult recording = recorder.open(options.record);
    if (!recording) {
        end_with(SessionEnd::FileFailed, recording.error, recording.advice);
        return false;
    }
    statistics.begun_ns = capture_time_ns();
    if (options.most_ns)
        end_ns = statistics.begun_ns + *options.most_ns;
    if (!connect() && !options.wait) {
        end_with(SessionEnd::OpenFailed);
        return false;
    }
    screen.take_keys(options.prefix);
    if (!reader) {
        note("waiting for " + wire.name() + ": " + wire.fault().text);
        wait.begin(wire.folders(), capture_time_ns());
    } else if (screen.has_keys() || options.view.json) {
        note_open();
    }
    ask(Asking::Nothing);
    return true;
}

void Session::turn()
{
    const bool keys = screen.has_keys();
    const bool wants_input =
        input_open && (keys || (reader && sends_done && unsent() < INPUT_AHEAD));
    pollfd all[] = {
        watched(signal_inbox.descriptor(), POLLIN, true),
        watched(STDIN_FILENO, POLLIN, wants_input),
        watched(inbox.descriptor(), POLLIN, true),
        watched(wire.descriptor(), POLLOUT, blocked && reader),
        watched(wait.descriptor(), POLLIN, wait.waiting()),
    };
    const int patience = reader && !sends_done ? 0 : patience_us(capture_time_ns());
    const timespec limit = {patience / 1'000'000, long(patience % 1'000'000) * 1000};
    ::ppoll(all, std::size(all), &limit, nullptr);

    take_signals();
    if (all[1].revents != 0 || screen.has_typed())
        take_input();
    if (all[3].revents != 0)
        blocked = false;
    if (reader && !sends_done) {
        sends_done = true;
        for (const QByteArray& bytes : options.sends)
            send(bytes);
    }
    push();
    take_inbox();
    output->expire(capture_time_ns());
    try_again();
    if (script.reached() && unsent() == 0 && (script.has_until() || !keys))
        end_with(SessionEnd::Reached);
    if (end_ns && capture_time_ns() >= *end_ns)
        end_in_time();
    if (!output->flush())
        end_with(SessionEnd::OutputFailed, screen.error());
}

// Nothing has been sent or seen when the port never came.
void Session::end_in_time()
{
    if (opened_ns == 0)
        end_with(SessionEnd::OpenFailed);
    else if (script.has_goal() && !script.reached())
        end_with(SessionEnd::Missed, script.pattern());
    else
        end_with(SessionEnd::TimeOver);
}

// In microseconds: pauses between characters are shorter than what poll() counts in.
int Session::patience_us(std::int64_t now_ns) const
{
    if (backlog_at < backlog.size() || screen.has_typed())
        return 0;
    std::int64_t next = now_ns + LONGEST_WAIT_NS / 2;
    const auto consider = [&](const std::optional<std::int64_t>& time) {
        next = time ? std::min(next, *time) : next;
    };
    consider(output->view().deadline());
    consider(end_ns);
    consider(wait.due());
    if (reader && !blocked)
        consider(queue.due());
    const std::int64_t us = (next - now_ns + NS_PER_US - 1) / NS_PER_US;
    return int(std::clamp(us, std::int64_t(0), LONGEST_WAIT_NS / NS_PER_US / 2));
}

void Session::take_inbox()
{
    if (backlog_at == backlog.size()) {
        bool end = false;
        backlog = inbox.take(end);
        backlog_at = 0;
        device_ended = device_ended || end;
    }
    for (int shown = 0; backlog_at < backlog.size() && shown < BATCH; ++backlog_at) {
        take_chunk(backlog[backlog_at]);
        shown += int(backlog[backlog_at].bytes.size());
    }
    if (device_ended && backlog_at == backlog.size())
        lose();
}

void Session::take_chunk(const Chunk& chunk)
{
    if (!chunk.note.isEmpty()) {
        note(chunk.note);
        return;
    }
    statistics.count(chunk);
    output->add(chunk);
    const bool sent = chunk.direction == Direction::Out;
    if (sent || !script.has_goal() || script.reached() || chunk.damaged)
        return;
    for (const QByteArray& reply : script.feed(chunk.bytes))
        send(reply);
}

void Session::take_signals()
{
    for (int number = signal_inbox.take(); number != 0; number = signal_inbox.take()) {
        if (number == SIGCONT) {
            screen.retake();
            continue;
        }
        end_with(SessionEnd::Interrupted);
    }
}

// The first end counts.
void Session::end_with(SessionEnd end, const QString& text, const QString& advice)
{
    if (!ended)
        ended = SessionResult{end, text, advice};
}

bool Session::connect()
{
    if (!wire.open())
        return false;
    opened_ns = capture_time_ns();
    device_ended = false;
    blocked = false;
    keys_refused = false;
    if (QextSerialPort* const port = wire.port())
        recorder.set_lines(port->lineStatus());
    recorder.remark("open: " + wire.name());
    try {
        reader = std::make_unique<Reader>(wire, inbox, reader_settings);
    } catch (const std::system_error&) {
        wire.close();
        end_with(SessionEnd::NoThread);
    }
    return reader != nullptr;
}

void Session::lose()
{
    const int left = unsent();
    device_ended = false;
    reader.reset();
    wire.close();
    ++statistics.losses;
    queue.clear();
    if (file)
        end_file("the port has gone");
    recorder.remark("lost: " + wire.name());
    const QString rest = left > 0 ? QStringLiteral("; %1 bytes were not sent").arg(left) : "";
    if (!options.reconnect) {
        end_with(SessionEnd::LinkLost, wire.name() + rest);
        return;
    }
    note(wire.name() + " has gone" + rest + "; waiting for it");
    const std::int64_t now = capture_time_ns();
    wait.begin(wire.folders(), std::max(now, std::min(opened_ns + SHORT_LIVED_NS,
                                                      now + PortWait::AGAIN_MS * NS_PER_MS)));
    // At once, unless it was only just opened: it may be back already.
    if (now - opened_ns > SHORT_LIVED_NS)
        wait.begin(wire.folders(), now);
}

void Session::try_again()
{
    const std::int64_t now = capture_time_ns();
    if (!wait.is_time(now))
        return;
    const bool was_open = opened_ns != 0;
    if (!connect()) {
        wait.failed(wire.present(), now);
        return;
    }
    wait.end();
    if (was_open)
        note(wire.name() + " is back");
    else
        note_open();
}

void Session::note_open()
{
    const QString key = shown_key(options.prefix);
    const QString hint = "; " + key + " ? lists the keys, " + key + " q quits";
    note(wire.name() + " is open" + (screen.has_keys() ? hint : QString()));
}

// What was read and not yet shown: who reads stdout and the log get all of it, while a person at a
// slow terminal does not wait for more than a batch. Another signal cuts it short.
void Session::show_rest()
{
    bool end = false;
    const QVector<Chunk> rest = backlog.mid(backlog_at) + inbox.take(end);
    std::int64_t left = 0;
    for (const Chunk& chunk : rest)
        left += chunk.bytes.size();
    if (left > BATCH && screen.is_terminal())
        output->leave_screen();
    int shown = 0;
    for (const Chunk& chunk : rest) {
        if (chunk.note.isEmpty())
            output->add(chunk);
        else
            note(chunk.note);
        shown += int(chunk.bytes.size());
        if (shown < BATCH)
            continue;
        shown = 0;
        if (!output->flush() || signal_inbox.take() != 0)
            return;
    }
}

SessionResult Session::finish()
{
    if (reader)
        reader->stop();
    const int left = unsent();
    reader.reset();
    wire.close();
    if (output)
        show_rest();
    if (left > 0)
        note(QStringLiteral("%1 bytes were not sent").arg(left));
    const CaptureResult recording = recorder.close();
    if (!recording)
        files_missed(recording.error, recording.advice);
    if (output && !output->finish())
        end_with(SessionEnd::OutputFailed, screen.error());
    if (output && !output->log_fault().isEmpty())
        files_missed(output->log_fault(), "Is its disk full?");
    if (!ended)
        end_with(SessionEnd::Quit);
    return *ended;
}

// A session that went well otherwise must not end as if all of it were kept.
void Session::files_missed(const QString& text, const QString& advice)
{
    const bool good = !ended || ended->end == SessionEnd::Quit ||
                      ended->end == SessionEnd::Reached || ended->end == SessionEnd::TimeOver;
    if (good)
        ended = SessionResult{SessionEnd::FileFailed, text, advice};
    else if (output)
        note(text);
}
