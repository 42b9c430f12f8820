#include "captures.h"

#include <QBuffer>
#include <QProcess>

namespace {

// Written down by a script of a few lines with the field tables of the format next to it, not by
// the builders here.
const char* const KNOWN_LITTLE[] = {
    "0a0d0d0a4c0000004d3c2b1a01000000ffffffffffffffff0100050063726331360000000300090044656269"
    "616e20313200000004000a005461726e7769636b20310000000000004c000000",
    "0100000048000000fa0000000000000002000700747479555342300003000a003131353230302c384e310000"
    "0800080000c201000000000009000100090000000000000048000000",
    "060000005000000000000000a7fc7a1815cd256f0c0000000c000000692481000001e2400018000001000600"
    "6f70656e6564000002000400000000000300050002469115200000000000000050000000",
    "060000004800000000000000a7fc7a18fdd0256f0f0000000f000000692481000001e2410119000001030000"
    "02000400020000000300050002fcdf3b090000000000000048000000",
    "060000004800000000000000a7fc7a18b5f24b6f1000000010000000692481000001ec04021900006f6b0d0a"
    "02000400010000000300050002672774f10000000000000048000000",
    "060000004400000000000000a7fc7a18d593536f0c0000000c100000692481000001edf80519000002000400"
    "010000000300050002a16c7e250000000000000044000000",
};
const char* const KNOWN_BIG[] = {
    "0a0d0d0a0000004c1a2b3c4d00010000ffffffffffffffff0001000563726331360000000003000944656269"
    "616e2031320000000004000a5461726e7769636b20310000000000000000004c",
    "000000010000004800fa0000000000000002000774747955534230000003000a3131353230302c384e310000"
    "00080008000000000001c20000090001090000000000000000000048",
    "000000060000005000000000187afca76f25cd150000000c0000000c692481000001e2400018000000010006"
    "6f70656e6564000000020004000000000003000502469115200000000000000000000050",
    "000000060000004800000000187afca76f25d0fd0000000f0000000f692481000001e2410119000001030000"
    "00020004000000020003000502fcdf3b090000000000000000000048",
    "000000060000004800000000187afca76f4bf2b50000001000000010692481000001ec04021900006f6b0d0a"
    "00020004000000010003000502672774f10000000000000000000048",
    "000000060000004400000000187afca76f5393d50000000c0000100c692481000001edf80519000000020004"
    "000000010003000502a16c7e250000000000000000000044",
};

} // namespace

QList<QByteArray> known_blocks(PcapngOrder order)
{
    QList<QByteArray> blocks;
    for (const char* const hex : order == PcapngOrder::Little ? KNOWN_LITTLE : KNOWN_BIG)
        blocks.append(QByteArray::fromHex(hex));
    return blocks;
}

QByteArray known_file(PcapngOrder order)
{
    return known_blocks(order).join();
}

QString line_of(const CaptureRecord& record)
{
    const char* const directions[] = {"-", "<", ">"};
    QString line = QStringLiteral("%1 %2 %3h %4 %5")
                       .arg(QString::number(record.time_ns), QString::number(int(record.event)),
                            QString::number(record.lines, 16), directions[int(record.direction)],
                            QString(record.bytes.toHex()));
    if (record.lost != 0)
        line += QStringLiteral(" lost %1").arg(record.lost);
    return (line + ' ' + record.comment).trimmed();
}

QStringList read_lines(const QByteArray& file)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    CaptureReader reader(buffer);
    QStringList lines;
    while (true) {
        switch (reader.next()) {
        case CaptureReader::Found::Section:
            lines += "section " + reader.section().application;
            break;
        case CaptureReader::Found::Port:
            lines += "port " + reader.ports().last().name;
            break;
        case CaptureReader::Found::Record:
            lines += line_of(reader.record());
            break;
        case CaptureReader::Found::Damage:
            lines +=
                QStringLiteral("%1 %2+%3")
                    .arg(reader.damage().kind == CaptureDamage::Kind::Block ? "damage" : "torn")
                    .arg(reader.damage().offset)
                    .arg(reader.damage().length);
            break;
        case CaptureReader::Found::End:
            return lines;
        }
    }
}

QList<CaptureRecord> read_records(const QByteArray& file)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    CaptureReader reader(buffer);
    QList<CaptureRecord> records;
    while (true) {
        const auto found = reader.next();
        if (found == CaptureReader::Found::End)
            return records;
        if (found == CaptureReader::Found::Record)
            records += reader.record();
    }
}

QStringList tshark(const QString& path, const QString& fields)
{
    QStringList arguments = {"-r", path, "-T", "fields", "-E", "separator=/s"};
    for (const QString& field : fields.split(' '))
        arguments << "-e" << field;
    QProcess process;
    process.start("tshark", arguments);
    process.waitForFinished(-1);
    return QString(process.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}
