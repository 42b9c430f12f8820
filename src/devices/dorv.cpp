#include "devices/dorv.h"

#include <QString>

namespace {
const QByteArray OK("ok\r\n");
const QByteArray ERROR("error\r\n");
const QByteArray AT("at+");
const QByteArray QUALITY("communication quality");
constexpr int LONGEST_LINE = 1024;
constexpr std::chrono::milliseconds ON_AIR(50); // to another module and back
constexpr std::chrono::milliseconds BETWEEN_ANNOUNCEMENTS(200);
constexpr std::chrono::milliseconds BETWEEN_ROUNDS(2000);

// The commands that carry a payload, and the report with which one arrives.
struct Sending
{
    const char* command = nullptr;
    const char* report = nullptr;
};
const Sending SENDINGS[] = {
    {"mactx", "+macrx"},        {"pmactx", "+pmacrx"}, {"radiotx", "+radiorx"},
    {"radiotxraw", "+radiorx"}, {"mac_send", "+data"},
};

struct Line
{
    QByteArray name; // between "at+" and "="
    QByteArray value;
};

Line parse(const QByteArray& command)
{
    const int sign = int(command.indexOf('='));
    if (!command.startsWith(AT))
        return {command, {}};
    if (sign < 0)
        return {command.mid(AT.size()), {}};
    return {command.mid(AT.size(), sign - AT.size()), command.mid(sign + 1)};
}

const Sending* find_sending(const QByteArray& name)
{
    for (const Sending& sending : SENDINGS) {
        if (name == sending.command)
            return &sending;
    }
    return nullptr;
}

// How many payload bytes follow the command; 0 for the commands that carry none.
int payload_size(const QByteArray& command)
{
    const Line line = parse(command);
    bool ok = false;
    const int size = line.value.toUShort(&ok);
    return find_sending(line.name) && ok ? size : 0;
}

int signal_of(std::uint32_t address)
{
    return -40 - int(address % 60);
}
} // namespace

Dorv::Dorv(const DorvSettings& settings, Journal journal)
    : settings(settings)
    , journal(std::move(journal))
    , memory(settings.file)
{
}

int Dorv::request_size(const QByteArray& heard, bool silence) const
{
    const int end = int(heard.indexOf('\r'));
    if (end < 0)
        return heard.size() > LONGEST_LINE ? int(heard.size()) : 0;
    const int size = end + 1 + payload_size(heard.left(end).trimmed());
    return heard.size() >= size ? size : silence ? int(heard.size()) : 0;
}

Answer Dorv::answer(const QByteArray& request)
{
    const int end = int(request.indexOf('\r'));
    const QByteArray command = request.left(end).trimmed(); // a terminal may send a line feed
    const QByteArray payload = request.mid(end + 1);
    const bool echoes = memory.value("echo") == "on";
    tell(QString::fromLatin1(command));
    const bool whole = end >= 0 && payload.size() == payload_size(command);
    Answer answer = whole ? obey(command, payload) : Answer{{{ERROR}}};
    if (echoes && !answer.replies.empty())
        answer.replies.front().bytes.prepend(command + "\r\r\n");
    return answer;
}

Answer Dorv::obey(const QByteArray& command, const QByteArray& payload)
{
    const Line line = parse(command);
    if (command == "+++" || command == "at")
        return {{{OK}}};
    if (command == "at+reboot")
        return {{{OK}}, true};
    if (command == "at+def") {
        memory.reset_to_factory();
        return {{{OK}}};
    }
    if (line.name == "rssi") {
        bool ok = false;
        const std::uint32_t address = line.value.toUInt(&ok, 16);
        return {{{ok ? "+rssi," + QByteArray::number(signal_of(address)) + "\r\n" : ERROR}}};
    }
    if (line.name == "pmactx" && line.value.startsWith("ucast,")) {
        const QList<QByteArray> fields = line.value.split(',');
        if (fields.size() != 3 || fields[2] != QUALITY)
            return {{{ERROR}}};
        const QByteArray signal = QByteArray::number(signal_of(fields[1].toUInt()));
        return {
            {{OK}, {fields[1] + "," + signal + ".5,7.25,10," + signal + ".0,6.5,0\r\n", ON_AIR}}};
    }
    if (find_sending(line.name))
        return send(line.name, payload);
    return set_or_tell(line.name, line.value);
}

Answer Dorv::set_or_tell(const QByteArray& name, const QByteArray& value)
{
    if (value.startsWith('?')) {
        const std::optional<QByteArray> answer = memory.told(name, value.mid(1));
        return {{{answer ? *answer + "\r\n" : ERROR}}};
    }
    return {{{memory.set(name, value) ? OK : ERROR}}};
}

Answer Dorv::send(const QByteArray& command, const QByteArray& payload) const
{
    if (payload.isEmpty())
        return {{{ERROR}}};
    Answer answer{{{OK}}};
    if (!settings.partner)
        return answer;
    const QByteArray report = find_sending(command)->report;
    const bool hex =
        command == "radiotxraw" || (report == "+radiorx" && memory.value("rxfmt") == "hex");
    answer.replies.push_back(
        {hex ? report + "=-61,7.5," + payload.toHex().toUpper() + "\r\n"
             : report + '=' + QByteArray::number(payload.size()) + "\r\n" + payload,
         ON_AIR});
    return answer;
}

// The neighbours announce themselves one after the other, then there is a pause.
Time Dorv::next_report(Time) const
{
    return settings.neighbours > 0 ? announcement : NEVER;
}

QByteArray Dorv::report(Time now)
{
    const int address = 1 + announced++ % settings.neighbours;
    const bool last = address == settings.neighbours;
    announcement = now + (last ? BETWEEN_ROUNDS : BETWEEN_ANNOUNCEMENTS);
    return "+devfound," + memory.value("bw") + ',' + memory.value("sf") + ",0x" +
           QByteArray::number(address, 16) + ',' +
           QByteArray::number(signal_of(std::uint32_t(address))) + "\r\n";
}

void Dorv::tell(const QString& text) const
{
    if (journal)
        journal(text);
}
