#include "tools/dorvcfg.h"

#include "checksum/hextext.h"
#include "framers/qframer.h"
#include "tools/atreply.h"
#include "tools/toolerror.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int REPLY_MAX = 1024; // of at_exchange
constexpr int QUERY_MAX = 64;   // what a query through at_exchange keeps of it
constexpr int EUI_SIZE = 8;
constexpr int KEY_SIZE = 16;
constexpr char COMMAND_HEAD[] = "at+";

// Up to the first NUL, where text ends.
QByteArray text_of(const QByteArray& reply)
{
    return QByteArray(reply.constData());
}

bool says_no(const QByteArray& reply)
{
    return reply.toLower().contains("err");
}

} // namespace

DorvCfg::DorvCfg(QLink* link)
    : link(link)
{
}

DorvCfg::~DorvCfg()
{
    delete search_timer;
    quit();
    wait();
}

void DorvCfg::command_write(const QByteArray& text)
{
    framer->flush();
    last_reply.clear();
    search_text.clear(); // its rest is dropped
    framer->write(text.constData(), int(text.size()));
}

// What one read of at most size bytes gives; empty on a time-out or an error.
QByteArray DorvCfg::reply_read(int size)
{
    QByteArray reply(size, '\0');
    reply.truncate(std::max(0, framer->read(reply.data(), size)));
    last_reply = reply;
    return reply;
}

// 0 or TOOL_FAILED for a reply that fits, or doesn't; and the outcome, for which it must also be
// whole and say no error.
int DorvCfg::judge(bool fits, bool whole)
{
    last_outcome = last_reply.isEmpty()                    ? DorvOutcome::NoReply
                   : fits && whole && !says_no(last_reply) ? DorvOutcome::Done
                   : last_reply.startsWith(COMMAND_HEAD)   ? DorvOutcome::Echoed
                                                           : DorvOutcome::Refused;
    return fits ? 0 : TOOL_FAILED;
}

// The same for a reply that is a value, which no echo is, though it may look like one.
int DorvCfg::judge_value(bool fits, bool whole)
{
    return judge(fits, whole && !last_reply.startsWith(COMMAND_HEAD));
}

int DorvCfg::at_exchange(const char* command, const char* expected, int match, int retries,
                         void* out, int out_size)
{
    const QByteArray text = command;
    const int skip = match == MATCH_ECHO ? int(text.size()) + 2 : 0; // the echo ends in CR LF
    for (;; --retries) {
        command_write(text);
        QByteArray reply(REPLY_MAX, '\0');
        const int count = std::min(framer->read(reply.data(), REPLY_MAX), REPLY_MAX);
        reply.truncate(std::max(0, count));
        last_reply = reply;
        judge(false);
        if (count != 0) {
            if (count > skip && out != nullptr)
                std::memcpy(out, reply.constData() + skip,
                            size_t(std::clamp(out_size, 0, count - skip)));
            const bool fits = expected == nullptr       ? true
                              : match == MATCH_CONTAINS ? reply.contains(expected)
                              : match == MATCH_ECHO     ? reply == text + "\r\n" + expected
                                                        : reply == expected;
            judge(fits);
            if (fits)
                return count - skip;
        }
        if (retries <= 0)
            return count == 0 ? AT_NO_REPLY : AT_MISMATCH;
    }
}

int DorvCfg::carry_out_word(const AtCommand& command, const char* word)
{
    if (word != nullptr)
        return carry_out(command, word);
    last_reply.clear();
    last_outcome = DorvOutcome::Unsent;
    return TOOL_FAILED;
}

int DorvCfg::agreed(const AtCommand& command, const QByteArray& text)
{
    if (command.reply_size == AT_EXCHANGE)
        return at_exchange(text.constData(), command.expected, MATCH_CONTAINS, 0) >= 1
                   ? 0
                   : TOOL_FAILED;
    command_write(text);
    const QByteArray reply = reply_read(command.reply_size);
    return judge(!reply.isEmpty() && reply.contains(command.expected));
}

// The reply to a command without arguments; empty when there was none.
QByteArray DorvCfg::query(const AtCommand& command)
{
    if (command.reply_size != AT_EXCHANGE) {
        command_write(command.text);
        return reply_read(command.reply_size);
    }
    QByteArray reply(QUERY_MAX, '\0');
    const int count =
        at_exchange(command.text, nullptr, MATCH_CONTAINS, 0, reply.data(), QUERY_MAX);
    reply.truncate(std::clamp(count, 0, QUERY_MAX));
    return reply;
}

QByteArray DorvCfg::text_queried(const AtCommand& command)
{
    return text_of(query(command));
}

int DorvCfg::mode_is(const char* beginning)
{
    return judge_value(query(at::MODE_GET).startsWith(beginning));
}

int DorvCfg::devaddr_get(std::uint32_t* addr)
{
    constexpr int SHORTEST = 3;
    const QByteArray reply = query(at::DEVADDR_GET);
    const auto value = at_address(text_of(reply));
    const bool fits = reply.size() >= SHORTEST && value;
    if (fits)
        *addr = *value;
    return judge_value(fits);
}

int DorvCfg::join_get(int* type)
{
    const QByteArray reply = query(at::JOIN_GET);
    const bool fits = reply.contains("otaa") || reply.contains("abp");
    if (fits)
        *type = reply.contains("otaa") ? 0 : 1;
    return judge_value(fits);
}

int DorvCfg::class_get(int* device_class)
{
    const QByteArray reply = query(at::CLASS_GET);
    for (int i = 0; const char* letter = at_class(i); ++i) {
        if (reply.contains(letter)) {
            *device_class = i;
            return judge_value(true);
        }
    }
    return judge_value(false);
}

int DorvCfg::heartbeat_get(std::uint16_t* first, std::uint16_t* second, std::uint16_t* third)
{
    const auto fields = at_fields(text_queried(at::HEARTBEAT_GET), 3);
    if (judge_value(!fields.isEmpty()) != 0)
        return TOOL_FAILED;
    *first = at_word(fields[0]);
    *second = at_word(fields[1]);
    *third = at_word(fields[2]);
    return 0;
}

int DorvCfg::pwrlimit_get(std::uint16_t* first, std::uint16_t* second)
{
    const auto fields = at_fields(text_queried(at::PWRLIMIT_GET), 2);
    if (judge_value(!fields.isEmpty()) != 0)
        return TOOL_FAILED;
    *first = at_word(fields[0]);
    *second = at_word(fields[1]);
    return 0;
}

int DorvCfg::eui_get(const AtCommand& command, void* eui)
{
    const QByteArray reply = query(command);
    const bool whole = reply.size() >= 2 * EUI_SIZE &&
                       hex_to_bytes(reply.constData(), 2 * EUI_SIZE, eui, EUI_SIZE) == EUI_SIZE;
    return judge_value(whole, at_key(reply.left(2 * EUI_SIZE)).size() == EUI_SIZE);
}

int DorvCfg::key_get(const AtCommand& command, void* key)
{
    const QByteArray reply = query(command);
    const QByteArray value = at_key(text_of(reply));
    std::copy_n(value.constData(), value.size(), static_cast<char*>(key));
    return judge_value(!reply.isEmpty(), value.size() == KEY_SIZE);
}

int DorvCfg::comm_quality_get(std::uint16_t addr, float* out1, float* out2, float* out3,
                              float* out4)
{
    constexpr int AGREEMENT = 4; // "ok" and its line end, before the report
    command_write(at_text(at::COMM_QUALITY, addr));
    if (judge_value(reply_read(AGREEMENT).startsWith("ok")) != 0)
        return TOOL_FAILED;
    const auto fields = at_fields(text_of(reply_read(at::COMM_QUALITY.reply_size)), 7);
    if (judge_value(!fields.isEmpty()) != 0)
        return TOOL_FAILED;
    *out1 = at_float(fields[4]);
    *out2 = at_float(fields[5]);
    *out3 = at_float(fields[1]);
    *out4 = at_float(fields[2]);
    return 0;
}

QString DorvCfg::rssi_get(std::uint32_t addr)
{
    command_write(at_text(at::RSSI, QString::number(addr, 16)));
    const QByteArray reply = reply_read(at::RSSI.reply_size);
    if (judge_value(reply.contains(at::RSSI.expected)) != 0)
        return QStringLiteral("N/A");
    return QString::fromLatin1(text_of(reply.mid(int(qstrlen(at::RSSI.expected)))));
}
