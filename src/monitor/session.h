// A session of tarnwickctl monitor: from the first open of the wire to the end.
#pragma once

#include "monitor/keys.h"
#include "monitor/lineending.h"
#include "monitor/output.h"
#include "monitor/pacing.h"
#include "monitor/portwait.h"
#include "monitor/reader.h"
#include "monitor/recorder.h"
#include "monitor/script.h"
#include "monitor/signals.h"
#include "monitor/statistics.h"

#include <QFile>
#include <memory>
#include <optional>

struct SessionOptions
{
    ViewOptions view;
    Pacing pacing;
    std::optional<LineEnding> ending; // for the Enter key CR if none, for a file as it is
    char prefix = KeyReader::CTRL_T;
    bool lines = false; // what is typed is edited and sent line by line
    bool wait = false;  // for a port that isn't there yet
    bool reconnect = true;
    std::optional<std::int64_t> most_ns; // how long the session lasts
    QVector<QByteArray> sends;           // once, after the first open
    QStringList strings;                 // the last ones of earlier sessions
    Script script;
    QString log; // pattern of its name; empty for none
    std::optional<Rotation> rotation;
    RecordSettings record;
    MakeFramers framers;
    int timeout_ms = 500; // framers: how long a write waits for its answer
};

enum class SessionEnd {
    Quit,         // the user's wish, or that of stdin's end after all was done
    Reached,      // what was waited for has come
    TimeOver,     // and nothing was waited for
    Missed,       // ... and what was waited for has not come: `text` is the pattern
    OpenFailed,   // see the wire's fault
    NoThread,     // the system starts none for the wire
    LinkLost,     // and the session was not to wait
    Interrupted,  // by a signal
    OutputFailed, // stdout takes no more
    FileFailed,   // the log or the record: `text`, `advice`
};

struct SessionResult
{
    SessionEnd end = SessionEnd::Quit;
    QString text;
    QString advice;
};

class Session
{
public:
    // The wire outlives it.
    Session(Wire& wire, const SessionOptions& options);
    ~Session();

    SessionResult run();
    // What was sent as a string, the ones given among them.
    const QStringList& strings() const { return sent_strings.lines(); }

private:
    enum class Asking { Nothing, Line, File, Hex, String };

    // session_posix.cpp: the loop
    bool begin();
    void turn();
    void end_in_time();
    int patience_us(std::int64_t now_ns) const;
    void take_inbox();
    void take_chunk(const Chunk& chunk);
    void take_signals();
    void end_with(SessionEnd end, const QString& text = {}, const QString& advice = {});
    bool connect();
    void lose();
    void try_again();
    void note_open();
    void show_rest();
    SessionResult finish();
    void files_missed(const QString& text, const QString& advice);

    // session_send_posix.cpp: what goes out
    void send(const QByteArray& bytes);
    int unsent() const; // bytes
    void push();
    void refuse(const QByteArray& bytes, const QString& reason);
    void feed_file();
    void take_input();
    void take_piped(const QByteArray& bytes);
    void show_progress();
    void begin_file(const QString& name);
    void end_file(const QString& how);

    // session_keys.cpp: what a person does
    void take_keys(const QByteArray& keys);
    void type(const QByteArray& bytes);
    void act(KeyAction action);
    void switch_view(KeyAction action);
    void move_line(KeyAction action);
    void send_break();
    void show_lines();
    void ask(Asking what);
    void edit_line(const QByteArray& bytes);
    void answer();
    void answer_string(const QString& text);
    void answer_hex(const QString& text);
    void show_prompt();
    void note(const QString& text);

    Wire& wire;
    const SessionOptions options;
    Screen screen;
    Signals signal_inbox;
    Inbox inbox;
    Recorder recorder;
    ReaderSettings reader_settings;
    std::unique_ptr<Output> output;
    std::unique_ptr<Reader> reader; // while the wire is open
    PortWait wait;
    SendQueue queue;
    Script script;
    KeyReader key_reader;
    Statistics statistics;
    LineEnding ending;
    QVector<Chunk> backlog;    // taken from the inbox
    int backlog_at = 0;        // the first of them that is not yet shown
    bool keys_refused = false; // said once for each time that the port is away
    bool device_ended = false;
    std::int64_t opened_ns = 0;
    std::optional<std::int64_t> end_ns;
    bool sends_done = false;
    bool input_open = true;
    QByteArray input_line;       // with framers: a line of stdin that has not ended
    bool blocked = false;        // the wire took less than there was
    std::unique_ptr<QFile> file; // being sent
    std::int64_t file_sent = 0;
    int file_percent = -1;

    History sent_strings;
    History hex_texts;
    History file_names;
    Asking asking = Asking::Nothing;
    std::unique_ptr<LineEdit> edit;
    std::optional<SessionResult> ended;
};
