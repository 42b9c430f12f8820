// What the keys of a session do.
#include "monitor/session.h"

#include "serialport/qextserialport.h"
#include "stack/typedbytes.h"

namespace {
constexpr char CTRL_C = 0x03;
constexpr char CTRL_P[] = "\x10";
constexpr int BREAK_MS = 250; // many characters even at 110 bits/s; what other terminals send
constexpr int STRINGS_SHOWN = 9;

constexpr struct
{
    LineStatus line;
    const char* name;
} LINES[] = {{LS_DTR, "DTR"}, {LS_RTS, "RTS"}, {LS_CTS, "CTS"},
             {LS_DSR, "DSR"}, {LS_DCD, "DCD"}, {LS_RI, "RI"}};

const char* on_off(bool on)
{
    return on ? "on" : "off";
}

// Hexadecimal digits in pairs, with blanks or colons anywhere. False for anything else.
bool hex_bytes(QString text, QByteArray& bytes)
{
    text.remove(' ').remove(':');
    const QByteArray digits = text.toLatin1();
    bytes = QByteArray::fromHex(digits);
    return !bytes.isEmpty() && bytes.toHex() == digits.toLower();
}
} // namespace

void Session::take_keys(const QByteArray& keys)
{
    KeyEvent event;
    for (int at = 0; at < keys.size() && !ended;) {
        at += key_reader.take(keys, at, event);
        if (!event.bytes.isEmpty())
            type(event.bytes);
        if (event.unknown != 0)
            note(shown_key(options.prefix) + ' ' + shown_key(event.unknown) + " is no command; " +
                 shown_key(options.prefix) + " ? lists them");
        if (event.action)
            act(*event.action);
    }
}

void Session::type(const QByteArray& bytes)
{
    if (file) {
        if (bytes.contains(CTRL_C))
            end_file("stopped");
    } else if (edit) {
        edit_line(bytes);
    } else if (reader) {
        send(with_ending(bytes, '\r', ending));
    } else if (!keys_refused) {
        keys_refused = true;
        note("nothing is sent until the port is back");
    }
}

void Session::act(KeyAction action)
{
    switch (action) {
    case KeyAction::Quit:
        end_with(SessionEnd::Quit);
        break;
    case KeyAction::Help:
        output->help(key_help(options.prefix));
        break;
    case KeyAction::Break:
        send_break();
        break;
    case KeyAction::ToggleDtr:
    case KeyAction::ToggleRts:
        move_line(action);
        break;
    case KeyAction::ShowLines:
        show_lines();
        break;
    case KeyAction::HexView:
    case KeyAction::Stamps:
    case KeyAction::Echo:
        switch_view(action);
        break;
    case KeyAction::Ending:
        ending = next(ending);
        note(QString("Enter sends ") + name_of(ending));
        break;
    case KeyAction::SendFile:
        ask(Asking::File);
        break;
    case KeyAction::SendHex:
        ask(Asking::Hex);
        break;
    case KeyAction::Statistics:
        note(statistics.text(capture_time_ns()));
        break;
    case KeyAction::Clear:
        output->clear_screen();
        break;
    case KeyAction::Strings:
        ask(Asking::String);
        break;
    }
}

void Session::switch_view(KeyAction action)
{
    ViewOptions view = output->view().options();
    QString said;
    if (action == KeyAction::HexView) {
        view.hex = !view.hex;
        said = QString("hexadecimal view ") + on_off(view.hex);
    } else if (action == KeyAction::Echo) {
        view.echo = !view.echo;
        said = QString("local echo ") + on_off(view.echo);
    } else {
        view.stamps = next(view.stamps);
        said = QString("stamps ") + name_of(view.stamps);
    }
    output->change(view);
    note(said);
}

void Session::move_line(KeyAction action)
{
    QextSerialPort* const port = wire.port();
    const LineStatus line = action == KeyAction::ToggleDtr ? LS_DTR : LS_RTS;
    const QString name = line == LS_DTR ? "DTR" : "RTS";
    if (!port) {
        note("no serial port is open, so there is no " + name);
        return;
    }
    const int status = port->lineStatus();
    const bool on = status >= 0 && (status & line) == 0;
    if (status < 0 || !(line == LS_DTR ? port->setDtr(on) : port->setRts(on))) {
        note(name + ": " + port->errorString());
        return;
    }
    recorder.set_lines(port->lineStatus());
    recorder.remark(name + ' ' + on_off(on));
    note(name + ' ' + on_off(on));
}

void Session::send_break()
{
    QextSerialPort* const port = wire.port();
    if (!port) {
        note("no serial port is open, so no break can be sent");
    } else if (!port->breakSend(BREAK_MS)) {
        note("break: " + port->errorString());
    } else {
        recorder.remark("break sent");
        note("break sent");
    }
}

void Session::show_lines()
{
    QextSerialPort* const port = wire.port();
    const int status = port ? port->lineStatus() : -1;
    if (status < 0) {
        note("lines: " + (port ? port->errorString() : QString("no serial port is open")));
        return;
    }
    QStringList lines;
    for (const auto& row : LINES)
        lines.append(QString(row.name) + ' ' + on_off((status & row.line) != 0));
    note(lines.join(", "));
}

// Nothing: back to what the session is for, keys or lines.
void Session::ask(Asking what)
{
    asking = what;
    if (what == Asking::Nothing && (options.lines || options.framers) && screen.has_keys())
        asking = Asking::Line;
    edit.reset();
    if (asking == Asking::Nothing) {
        output->hide_line();
        return;
    }
    edit = std::make_unique<LineEdit>(asking == Asking::File  ? file_names
                                      : asking == Asking::Hex ? hex_texts
                                                              : sent_strings);
    if (asking == Asking::String) {
        const QStringList last =
            sent_strings.lines().mid(std::max(0, int(sent_strings.lines().size()) - STRINGS_SHOWN));
        output->help(last.isEmpty() ? QString() : last.join('\n') + '\n');
        edit->take(CTRL_P, 0);
    }
    show_prompt();
}

void Session::show_prompt()
{
    static constexpr const char* LABELS[] = {"", "> ", "file: ", "hex: ", "string: "};
    output->show_line(edit->is_searching() ? "search " + edit->searched() + ": "
                                           : QString(LABELS[int(asking)]),
                      *edit);
}

void Session::edit_line(const QByteArray& bytes)
{
    int at = 0;
    while (at < bytes.size() && edit) {
        at += edit->take(bytes, at);
        if (edit->state() == LineEdit::State::Done)
            answer();
        else if (edit->state() == LineEdit::State::GivenUp)
            ask(Asking::Nothing);
    }
    if (edit)
        show_prompt();
    else if (at < bytes.size())
        type(bytes.mid(at));
}

void Session::answer()
{
    const QString text = edit->text();
    const Asking what = asking;
    if (!reader) {
        note("nothing is sent until the port is back");
        edit->go_on();
        return;
    }
    ask(Asking::Nothing);
    if (what == Asking::Line || (what == Asking::String && !text.isEmpty()))
        answer_string(text);
    else if (what == Asking::Hex && !text.isEmpty())
        answer_hex(text);
    else if (what == Asking::File && !text.isEmpty()) {
        file_names.add(text);
        begin_file(text);
    }
}

void Session::answer_string(const QString& text)
{
    const TypedBytes typed = typed_bytes(text);
    if (!typed.fault.isEmpty()) {
        note("not sent: " + typed.fault);
        return;
    }
    sent_strings.add(text);
    const bool with_end = typed.ended && !(options.framers && !options.ending);
    send(typed.bytes + (with_end ? bytes_of(ending) : QByteArray()));
}

void Session::answer_hex(const QString& text)
{
    QByteArray bytes;
    if (!hex_bytes(text, bytes)) {
        note("not sent: bytes are pairs of hexadecimal digits, as in 01 a5");
        return;
    }
    hex_texts.add(text);
    send(bytes);
}

void Session::note(const QString& text)
{
    output->note(text);
}
