// A capture in plain bytes, and what a reader makes of any.
#pragma once

#include "capture/capturereader.h"
#include "capture/pcapng.h"

#include <QByteArray>
#include <QStringList>
#include <csignal>
#include <sys/resource.h>

// Of a section, a port and four records: block by block.
QList<QByteArray> known_blocks(PcapngOrder order);
QByteArray known_file(PcapngOrder order = PcapngOrder::Little);

// One line for each thing that is found, such as "section Tarnwick 1", "damage 12+80",
// "torn 300+20", or a record: "1764000000123457789 1 19h > 010300".
QStringList read_lines(const QByteArray& file);
QList<CaptureRecord> read_records(const QByteArray& file);
QString line_of(const CaptureRecord& record);

// What tshark prints of the fields, a line a packet, blanks between.
QStringList tshark(const QString& path, const QString& fields);

// Files of this process end there, as on a full disk.
class FullAt
{
public:
    explicit FullAt(rlim_t size)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit full = {size, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullAt() { setrlimit(RLIMIT_FSIZE, &before); }

private:
    rlimit before = {};
};
