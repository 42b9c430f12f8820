// A capture that a command reads: which of its records are asked for, and how they are shown.
#pragma once

#include "capture/capturereader.h"
#include "cli/failure.h"
#include "cli/invocation.h"

#include <QFile>
#include <optional>

// --from, --to, --records, --port and --direction.
QList<QCommandLineOption> selection_options();
// --gap and --frame.
QList<QCommandLineOption> frame_options();

struct NumberedRecord
{
    std::uint64_t number = 0; // counted from 1 in the file
    CaptureRecord record;
    PcapngInterface port;
};

class CapturedFile
{
public:
    // Opens it; damage is noted on stderr. Everything throws Failure.
    CapturedFile(const Invocation& invocation, const QString& name);

    // The next record that is asked for.
    std::optional<NumberedRecord> next();

    // Called for sections and ports as they come; with an empty section where one has begun with a
    // damaged header.
    std::function<void(const PcapngSection&)> on_section;
    std::function<void(const PcapngInterface&)> on_port;
    bool several_ports() const { return reader.ports().size() > 1; } // in this section

private:
    struct Moment
    {
        std::int64_t ns;
        bool from_start; // since the first record, else since 1970
    };

    static std::optional<Moment> moment(const Invocation& invocation, const char* option);
    void read_record_range();
    bool is_asked_for(const NumberedRecord& read) const;
    void note_damage();
    void see_port(const QString& port);
    bool is_asked_port(const QString& port) const;
    void check_content() const;

    const Invocation& invocation;
    const QString name;
    QFile file;
    CaptureReader reader;
    std::optional<Moment> from;
    std::optional<Moment> to;
    std::uint64_t first_number = 1;
    std::uint64_t last_number = ~std::uint64_t(0);
    std::uint64_t count = 0;
    std::int64_t start_ns = 0;
    std::uint64_t damage_count = 0;
    bool is_capture = false;
    QStringList seen_ports;
};

// Throws Failure.
void open_capture(QFile& file);
Failure no_capture(const QString& name);
// Text from a file, without line ends.
QString one_line(const QString& text);
// "1 frame", "2 frames".
QString counted(std::uint64_t count, const QString& what);
// Local time with microseconds.
QString time_text(std::int64_t ns);
// "> 01 03", "< 6F 6B  "ok"", "! framing error", "* DTR RTS  opened".
QString record_text(const CaptureRecord& record);
QString direction_name(CaptureDirection direction);
QString event_name(CaptureEvent event);
// For scripts, an object a record or frame.
QJsonObject record_json(const NumberedRecord& read);
