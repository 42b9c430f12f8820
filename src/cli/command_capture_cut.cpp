// tarnwickctl capture cut: a part of a capture as a file of its own.
#include "cli/capturedfile.h"

#include <QSaveFile>

namespace {

class CutFile
{
public:
    CutFile(const QString& source, const QString& name)
        : source(source)
        , file(name)
    {
        if (QFile::exists(name))
            throw Failure{ExitCode::File, name + " is there already",
                          "Give another name, or remove it."};
        if (!file.open(QIODevice::WriteOnly))
            throw failure();
    }

    void begin(const PcapngSection& section)
    {
        PcapngSection own = section;
        if (!own.is_own())
            own.application = QStringLiteral("%1, from a capture by %2")
                                  .arg(PcapngSection::OWN_APPLICATION, section.application.isEmpty()
                                                                           ? "an unknown program"
                                                                           : section.application);
        own.comments.append("cut from " + source);
        write(own.build());
    }

    void add(const PcapngInterface& port)
    {
        PcapngInterface own = port;
        own.resolution = PcapngInterface::NANOSECONDS;
        own.time_offset_s = 0;
        own.link_type = PcapngInterface::SERIAL;
        own.snap_length = 0;
        write(own.build());
    }

    void add(const CaptureRecord& record)
    {
        write(packet_of(record).build());
        if (record.lost == 0 || record.event == CaptureEvent::DataLost)
            return;
        CaptureRecord loss = record; // another recorder kept the beginning of it alone
        loss.event = CaptureEvent::DataLost;
        loss.bytes.clear();
        write(packet_of(loss).build());
    }

    void commit()
    {
        if (!file.commit())
            throw failure();
    }

private:
    void write(const QByteArray& block)
    {
        if (file.write(block) != block.size())
            throw failure();
    }

    Failure failure() const
    {
        return {ExitCode::File,
                "the capture " + file.fileName() + " can't be written: " + file.errorString(),
                "Is the disk full, and may you write to that folder?"};
    }

    const QString source;
    QSaveFile file;
};

void run_cut(Invocation& invocation)
{
    invocation.expect_at_most(2);
    const QString name = invocation.argument(0, "FILE");
    const QString out_name = invocation.argument(1, "OUT");
    CapturedFile capture(invocation, name);
    CutFile out(name, out_name);
    bool begun = false;
    int ports = 0;
    capture.on_section = [&](const PcapngSection& section) {
        out.begin(section);
        begun = true;
        ports = 0;
    };
    capture.on_port = [&](const PcapngInterface& port) {
        if (!begun)
            out.begin({});
        begun = true;
        out.add(port);
        ++ports;
    };
    std::uint64_t count = 0;
    while (const auto read = capture.next()) {
        // Where descriptions are damaged, nameless ports take their place.
        while (ports <= int(read->record.port))
            capture.on_port({});
        out.add(read->record);
        ++count;
    }
    out.commit();
    invocation.console.line(out_name + ": " + counted(count, "record"));
    invocation.console.result({{"file", out_name}, {"records", qint64(count)}});
}

} // namespace

QList<Command> capture_cut_commands()
{
    return {{"capture cut", "FILE OUT", "Write a part of a capture into a new file.",
             "Writes the records that are asked for into a new capture, which says where it comes\n"
             "from. Without options all records are taken, so that what is left of a damaged file\n"
             "becomes a good one.\n\n"
             "  tarnwickctl capture cut session.pcapng start.pcapng --to 60\n"
             "  tarnwickctl capture cut session.pcapng bug.pcapng --records 1000-1200",
             selection_options(), Needs::Nothing, run_cut}};
}
