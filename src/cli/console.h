// The two streams of the program: results on stdout, all that is for a person alone on stderr.
#pragma once

#include <QJsonObject>
#include <QString>
#include <mutex>

// The text with its control characters, but for line feeds and tabs, as \u001b: texts come from
// devices, files and ports too, and no terminal is to obey them. JSON spells it the same way.
QString harmless(const QString& text);

// What it shows is harmless, but for bytes(). Any thread may call it.
class Console
{
public:
    explicit Console(bool json);

    // A line of the result, not shown in JSON mode.
    void line(const QString& text);
    // The result as it is, not shown in JSON mode.
    void bytes(const QByteArray& data);
    // The whole result, shown in JSON mode alone, as one line.
    void result(const QJsonObject& object);
    void note(const QString& text);

    // On a terminal the line replaces the one before; elsewhere one line for each ten percent.
    void progress(const QString& text, int percent);
    void end_progress();
    // Progress as lines also on a terminal, for when other lines come between.
    void use_plain_progress();

    // False when something could not be written, as on a full disk.
    bool flush();

private:
    void write_note(const QString& text);
    void clear_progress();

    std::mutex mutex;
    const bool json;
    bool in_place = false; // stderr is a terminal that takes a line back
    bool progress_shown = false;
    int last_step = -1; // tens of percent last shown as a line
};
