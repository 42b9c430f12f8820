// What comes from a device, what comes to a simulated one from its host, and the file of a
// recorder.
#include "capture/capturereader.h"
#include "devices/answering.h"
#include "devices/boot.h"
#include "devices/cnet.h"
#include "devices/dorv.h"
#include "devices/replay.h"
#include "framers/qframerchan.h"
#include "framers/qframercnet.h"
#include "framers/qframercrc16.h"
#include "framers/qframerdorv.h"
#include "framers/qframernull.h"
#include "framers/qframerrtu.h"
#include "framers/qframerrwlt.h"
#include "fuzzing.h"
#include "memorylink.h"
#include "tools/atreply.h"
#include "tools/bootdialogue.h"
#include "tools/cnetframe.h"

#include <QBuffer>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// What the framer reads into a buffer of just that size: a byte too many is AddressSanitizer's to
// find.
QByteArray read_all(QFramer& framer, MemoryLink& link, int nbytes, const QByteArray& came)
{
    link.flush();
    link.arrive(came);
    std::vector<char> buffer(std::size_t(nbytes), '\0');
    const int count = framer.read(buffer.data(), nbytes);
    require(count <= nbytes);
    return {buffer.data(), qMax(0, count)};
}

// The first byte says how much the reader asks for, the second is the framer's address or mode, the
// rest is what comes, unasked and as the reply to each write. A payload that came, sent again,
// gives the same bytes.
void framers(const QByteArray& input)
{
    if (input.size() < 2)
        return;
    const int nbytes = std::uint8_t(input[0]) * 8; // reaches past frames that need no heap
    const std::uint8_t choice = std::uint8_t(input[1]);
    const QByteArray came = input.mid(2);
    MemoryLink link;
    link.device = [&](const QByteArray&) { return came; };
    QFramerNull bytes(&link);
    QFramerCrc16 crc16(&bytes);
    QFramerRtu rtu(&bytes);
    rtu.slave_set(choice);
    QFramerChan chan(&bytes);
    chan.chan_set("0123456789ABCDEF", choice % 17u);
    QFramerRwlt rwlt(&bytes);
    QFramerCnet cnet(&bytes);
    cnet.target_set(std::uint16_t(choice));
    cnet.keep_trying_set([] { return false; });
    for (QFramer* framer : std::initializer_list<QFramer*>{&crc16, &rtu, &chan, &rwlt, &cnet}) {
        const QByteArray payload = read_all(*framer, link, nbytes, came);
        const QByteArray unread = link.unread();
        framer->write(payload.constData(), payload.size());
        require(payload.isEmpty() || link.written.last() + unread == came);
    }
    QFramerDorv dorv(&bytes);
    dorv.link_set(&link);
    dorv.verbose_set(true);
    dorv.raw_set(choice >= 0x80);
    dorv.mode_set(choice & 3);
    const QByteArray payload = read_all(dorv, link, nbytes, came);
    require(choice >= 0x80 || came.contains(payload)); // only raw payload is decoded
    dorv.write("ping", 4);
    std::vector<char> text(std::size_t(nbytes), '\0');
    link.arrive(came);
    dorv.text_read("+radiorx", text.data(), nbytes);
}

// The tools' answers.
void replies(const QByteArray& reply)
{
    require(at_key(reply).size() <= 16);
    at_address(reply);
    for (const QByteArray& field : at_fields(reply, 3))
        at_word(field);
    // Where the text is cut changes nothing.
    QByteArray whole = reply + '\n';
    QByteArray piece = whole.left(reply.size() / 2);
    QStringList devices = at_devices_take(piece);
    piece += whole.mid(reply.size() / 2);
    devices += at_devices_take(piece);
    require(reply.size() > 1024 || devices == at_devices_take(whole));
    if (const auto response = cnet_response(reply))
        require(response->payload.size() == reply.size() - CNET_FRAMING);
    if (reply.size() < BOOT_INFO_MIN)
        return;
    const std::vector<std::uint8_t> record(reply.begin(), reply.end());
    const DeviceInfo info = device_info(record.data(), int(record.size()));
    const int name_size = int(info.name.value_or(QString()).size());
    require(name_size + info.hard_info_size <= reply.size() - BOOT_INFO_MIN);
    soft_info(info);
    hard_info_text("%1 %2 %3 %4 %5", info.hard_info, info.hard_info_size);
}

std::unique_ptr<Module> make_module(unsigned choice)
{
    if (choice % 8 == 0)
        return std::make_unique<Cnet>(cnet_device(9, 0, 1), cnet_neighbourhood(6, 1));
    if (choice % 8 == 1)
        return std::make_unique<Dorv>(DorvSettings());
    const char* const frames[] = {"none", "crc16", "rtu:1", "chan:0506", "rwlt", "none"};
    BootSettings settings;
    settings.framing = *Framing::named(frames[choice % 8 - 2]);
    settings.rom_size = 4096;
    settings.in_boot = (choice & 8) != 0;
    return std::make_unique<Boot>(settings);
}

// Asks the module for all of it, in one piece with silence after it.
void ask(Module& module, QByteArray heard)
{
    while (!heard.isEmpty()) {
        const int begun = module.request_size(heard, false);
        const int request = begun == 0 ? module.request_size(heard, true) : begun;
        require(request >= 0 && request <= heard.size());
        if (request == 0)
            return; // the start of a line, which somebody still types
        const Answer answer = module.answer(heard.left(request));
        if (answer.resets)
            module.restart();
        heard.remove(0, request);
    }
}

// The first byte is the module and its frame, the rest is what it is asked.
void modules(const QByteArray& input)
{
    ask(*make_module(std::uint8_t(input.isEmpty() ? 0 : input[0])), input.mid(1));
}

// A file of a recorder: all of it is either in a block or damaged, and a record that is written
// anew is read as the same.
void capture(const QByteArray& file)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    CaptureReader reader(buffer);
    std::int64_t end = 0;
    while (true) {
        const CaptureReader::Found found = reader.next();
        require(reader.offset() >= end && reader.offset() <= file.size());
        end = reader.offset();
        if (found == CaptureReader::Found::End)
            return;
        if (found == CaptureReader::Found::Damage)
            end += reader.damage().length;
        if (found != CaptureReader::Found::Record)
            continue;
        const CaptureRecord& record = reader.record();
        const QByteArray block = packet_of(record).build();
        const auto packet =
            PcapngPacket::parse(*PcapngBlock::parse(block, PcapngOrder::Little).value);
        const CaptureRecord again = *record_of(*packet.value, PcapngInterface()).value;
        require(packet_of(again).build() == block);
        require(again.bytes == record.bytes && again.time_ns == record.time_ns);
    }
}

// A capture as a device: all that was received comes again, and what was sent can be asked.
void recording(const QByteArray& file)
{
    static const int memory = memfd_create("capture", MFD_CLOEXEC);
    static const QString path = QString("/proc/self/fd/%1").arg(memory);
    require(ftruncate(memory, 0) == 0 &&
            pwrite(memory, file.constData(), std::size_t(file.size()), 0) == file.size());
    const Journal notes = [](const QString&) {};
    try {
        auto port = std::make_unique<CapturedPort>(path, QString(), notes);
        QByteArray sent;
        while (const auto piece = port->next())
            if (piece->kind == CapturedPiece::Kind::Sent)
                sent += piece->bytes;
        require(sent.size() == port->amount().sent);
        if (!sent.isEmpty()) {
            CapturedPort again(path, QString(), notes);
            AnswerSettings settings;
            settings.near = true;
            Answering module(again, settings, notes);
            ask(module, sent);
        }
        port = std::make_unique<CapturedPort>(path, QString(), notes);
        std::int64_t left = port->amount().received;
        Replay replay(std::move(port), {}, {}, notes);
        for (Time now{}; replay.next_wake(now) != NEVER;) {
            now = std::max(now, replay.next_wake(now));
            left -= replay.transmit(4096, now).size();
        }
        require(left == 0);
    } catch (const std::runtime_error&) {
        // no capture, or none of one port
    }
}

} // namespace

const QMap<QByteArray, Parser> PARSERS = {{"framers", framers},
                                          {"replies", replies},
                                          {"modules", modules},
                                          {"capture", capture},
                                          {"recording", recording}};
