// Where a session shows what comes: the screen with the line that is being typed below, and the
// log.
#pragma once

#include "monitor/lineedit.h"
#include "monitor/logfile.h"
#include "monitor/screen.h"
#include "monitor/view.h"

#include <memory>

class Output
{
public:
    // The screen outlives it; there may be no log.
    Output(Screen& screen, const ViewOptions& options, std::unique_ptr<LogFile> log);

    View& view() { return shown; }
    void change(const ViewOptions& options) { shown.change(options, text); }
    void add(const Chunk& chunk) { shown.add(chunk, text); }
    // A line of the program's own. On stderr where stdout is no terminal, but in JSON, so that
    // stdout has the device's bytes alone; in the log in any case.
    void note(const QString& line);
    // Several lines for the screen alone.
    void help(const QString& lines);
    void clear_screen();
    // What time has brought to an end.
    void expire(std::int64_t now_ns) { shown.expire(now_ns, text); }

    // The line below the text, until hide_line. It is drawn by flush.
    void show_line(const QString& label, const LineEdit& edit);
    void hide_line();

    // Writes what there is. False when stdout takes no more.
    bool flush();
    // What comes from now on is for the log alone.
    void leave_screen() { screen_left = true; }
    // Ends open lines, and gives the colours back.
    bool finish();
    // What the log lacks at the end; empty for nothing.
    QString log_fault() const;

private:
    void log_text();
    void write_log(const QByteArray& bytes);
    void remove_line(QByteArray& out);
    void draw_line(QByteArray& out);
    void count_cells(const QByteArray& bytes);

    Screen& screen;
    View shown;
    std::unique_ptr<LogFile> log;
    bool log_failing = false;
    bool screen_left = false;
    QByteArray text; // shown and not yet written
    int logged = 0;  // of it, when a note came meanwhile
    QString label;
    QString typed;
    int cursor = 0;
    bool wanted = false; // a line below the text
    bool drawn = false;
    bool redraw = false;
    int used = 0;   // cells of the text's last line, while a line is drawn below it
    int column = 0; // where the next character goes, among them
};
