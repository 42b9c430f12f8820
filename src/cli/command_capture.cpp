// tarnwickctl capture info and verify: what a capture holds, and whether it is whole.
#include "cli/capturedfile.h"

#include "capture/capturesurvey.h"

#include <QJsonArray>

namespace {

struct Surveyed
{
    explicit Surveyed(const Invocation& invocation)
        : name(invocation.argument(0, "FILE"))
    {
        invocation.expect_at_most(1);
        QFile file(name);
        open_capture(file);
        survey = CaptureSurvey::of(file, [&] { return !invocation.interrupts.raised(); });
        invocation.interrupts.check();
        if (survey.section_count == 0 && survey.record_count == 0)
            throw no_capture(name);
    }

    QString name;
    CaptureSurvey survey;
};

QString byte_count(std::uint64_t bytes)
{
    return counted(bytes, "byte");
}

QString port_text(const PcapngInterface& port)
{
    QString text = one_line(port.name.isEmpty() ? "nameless" : port.name);
    if (!port.description.isEmpty())
        text += "  " + one_line(port.description);
    if (port.link_type != PcapngInterface::SERIAL)
        text += QStringLiteral("  link type %1, not serial").arg(port.link_type);
    return text;
}

QJsonObject survey_json(const CaptureSurvey& survey)
{
    QJsonArray ports;
    for (const PcapngInterface& port : survey.ports)
        ports.append(QJsonObject{{"name", port.name},
                                 {"settings", port.description},
                                 {"rate", qint64(port.speed)},
                                 {"link_type", port.link_type}});
    QJsonArray sections;
    for (const PcapngSection& section : survey.sections)
        sections.append(QJsonObject{{"application", section.application},
                                    {"system", section.system},
                                    {"comment", section.comments.join('\n')}});
    return {{"bytes", qint64(survey.size)},
            {"sections", sections},
            {"ports", ports},
            {"records", qint64(survey.record_count)},
            {"received_bytes", qint64(survey.bytes_received)},
            {"sent_bytes", qint64(survey.bytes_sent)},
            {"lost_bytes", qint64(survey.bytes_lost)},
            {"skipped_blocks", qint64(survey.skipped_count)},
            {"first_ns", QString::number(survey.first_ns)},
            {"last_ns", QString::number(survey.last_ns)},
            {"damages", qint64(survey.damage_count)}};
}

void run_info(Invocation& invocation)
{
    const Surveyed surveyed(invocation);
    const CaptureSurvey& survey = surveyed.survey;
    const auto row = [&](const char* what, const QString& value) {
        invocation.console.line(QString(what).leftJustified(10) + value);
    };
    row("file", surveyed.name + ", " + byte_count(std::uint64_t(survey.size)));
    for (const PcapngSection& section : survey.sections) {
        row("section", one_line(section.application + " on " + section.system));
        for (const QString& comment : section.comments)
            row("", "# " + one_line(comment));
    }
    for (const PcapngInterface& port : survey.ports)
        row("port", port_text(port));
    row("records", QString::number(survey.record_count));
    row("received", byte_count(survey.bytes_received));
    row("sent", byte_count(survey.bytes_sent));
    if (survey.bytes_lost > 0)
        row("lost", byte_count(survey.bytes_lost));
    if (survey.skipped_count > 0)
        row("skipped", counted(survey.skipped_count, "block") + " of other kinds");
    if (survey.record_count > 0) {
        row("first", time_text(survey.first_ns));
        row("last", time_text(survey.last_ns));
    }
    if (survey.damage_count > 0)
        row("damaged",
            counted(survey.damage_count, "place") + "; `tarnwickctl capture verify` shows more");
    invocation.console.result(survey_json(survey));
}

QJsonArray damages_json(const CaptureSurvey& survey)
{
    QJsonArray damages;
    for (const CaptureDamage& damage : survey.damages)
        damages.append(QJsonObject{{"offset", qint64(damage.offset)},
                                   {"bytes", qint64(damage.length)},
                                   {"torn_end", damage.kind == CaptureDamage::Kind::TornEnd},
                                   {"reason", damage.reason}});
    return damages;
}

void run_verify(Invocation& invocation)
{
    const Surveyed surveyed(invocation);
    const CaptureSurvey& survey = surveyed.survey;
    for (const CaptureDamage& damage : survey.damages)
        invocation.console.line(
            QStringLiteral("%1 at byte %2, %3: %4")
                .arg(damage.kind == CaptureDamage::Kind::TornEnd ? "torn end" : "damaged",
                     QString::number(damage.offset), byte_count(std::uint64_t(damage.length)),
                     damage.reason));
    const QJsonObject result{{"good", survey.damage_count == 0},
                             {"good_bytes", qint64(survey.good_end)},
                             {"bytes", qint64(survey.size)},
                             {"records", qint64(survey.record_count)},
                             {"damages", damages_json(survey)}};
    if (survey.damage_count > 0)
        throw Failure{
            ExitCode::File,
            QStringLiteral("%1 is damaged in %2; it is good up to byte %3 of %4")
                .arg(surveyed.name, counted(survey.damage_count, "place"),
                     QString::number(survey.good_end), QString::number(survey.size)),
            QStringLiteral(
                "What can be read is %1. `tarnwickctl capture cut %2 OUT` writes that into a "
                "file of its own.")
                .arg(counted(survey.record_count, "record"), surveyed.name),
            result};
    invocation.console.line(surveyed.name + " is good: " + counted(survey.record_count, "record") +
                            " in " + byte_count(std::uint64_t(survey.size)));
    invocation.console.result(result);
}

} // namespace

QList<Command> capture_commands()
{
    return {
        {"capture info",
         "FILE",
         "Show what a capture holds.",
         "Shows who recorded a capture, on which ports, and how much of what.\n\n"
         "  tarnwickctl capture info session.pcapng",
         {},
         Needs::Nothing,
         run_info},
        {"capture verify",
         "FILE",
         "Check that a capture is whole.",
         "Looks at every block of a capture: lengths, check values, and that each record is as it\n"
         "was written. Shows each damaged place, and up to where the file is good. A recording "
         "that\n"
         "a kill or a lost supply ended has a torn end at most.\n\n"
         "  tarnwickctl capture verify session.pcapng",
         {},
         Needs::Nothing,
         run_verify},
    };
}
