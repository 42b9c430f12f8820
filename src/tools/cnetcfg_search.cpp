// The search of CnetCfg: what runs on its thread, and what starts and ends it.

#include "tools/cnetcfg.h"

#include "tools/toolerror.h"

#include <QtEndian>
#include <cstring>

namespace {

// Between two answers of a pair, so that a flood of them leaves the log's reader time.
constexpr unsigned long ANSWER_PAUSE_MS = 100;

constexpr CnetCommand SEARCHES[] = {cnet::SEARCH_ALL_EXT, cnet::SEARCH_ADDR_EXT, cnet::SEARCH_ALL,
                                    cnet::SEARCH_ADDR};

template <typename Record> Record record_of(const QByteArray& bytes)
{
    Record record;
    std::memcpy(record.bytes, bytes.constData(), sizeof record.bytes);
    return record;
}

} // namespace

int CnetCfg::search_addr(std::uint32_t chan_mask, std::uint32_t baud_mask, const void* target)
{
    return search_begin(chan_mask, baud_mask, target, cnet::SEARCH_ADDR.code);
}

int CnetCfg::search_addr(std::uint32_t chan_mask, std::uint32_t baud_mask, std::uint16_t target)
{
    const std::uint16_t wire = qToBigEndian(target);
    return search_addr(chan_mask, baud_mask, &wire);
}

int CnetCfg::search_addr_ext(std::uint32_t chan_mask, std::uint32_t baud_mask, const void* target)
{
    return search_begin(chan_mask, baud_mask, target, cnet::SEARCH_ADDR_EXT.code);
}

int CnetCfg::search_addr_ext(std::uint32_t chan_mask, std::uint32_t baud_mask, std::uint16_t target)
{
    const std::uint16_t wire = qToBigEndian(target);
    return search_addr_ext(chan_mask, baud_mask, &wire);
}

int CnetCfg::search_all(std::uint32_t chan_mask, std::uint32_t baud_mask)
{
    return search_begin(chan_mask, baud_mask, nullptr, cnet::SEARCH_ALL.code);
}

int CnetCfg::search_all_ext(std::uint32_t chan_mask, std::uint32_t baud_mask)
{
    return search_begin(chan_mask, baud_mask, nullptr, cnet::SEARCH_ALL_EXT.code);
}

int CnetCfg::search_begin(std::uint32_t chan_mask, std::uint32_t baud_mask, const void* target,
                          std::uint8_t cmd)
{
    if (isRunning())
        return TOOL_BUSY;
    search_prepare(chan_mask, baud_mask, target, cmd);
    start();
    return 0;
}

void CnetCfg::search_prepare(std::uint32_t chan_mask, std::uint32_t baud_mask, const void* target,
                             std::uint8_t cmd)
{
    this->chan_mask = chan_mask;
    this->baud_mask = baud_mask;
    if (target != nullptr)
        std::memcpy(this->target, target, CNET_TARGET_SIZE);
    stopped = false;
    search_cmd = cmd;
}

void CnetCfg::abort()
{
    stopped = true;
}

void CnetCfg::run()
{
    for (const CnetCommand& command : SEARCHES) {
        if (command.code == search_cmd)
            search(command);
    }
    search_cmd = 0;
}

void CnetCfg::search(const CnetCommand& command)
{
    const QVector<CnetPair> pairs = cnet_pairs(chan_mask, baud_mask);
    emit search_started(int(pairs.size()));
    CnetOutcome ending = CnetOutcome::Done;
    for (int current = 0; current < pairs.size() && ending == CnetOutcome::Done; ++current) {
        if (stopped) {
            ending = CnetOutcome::Aborted;
            break;
        }
        emit search_progress(current, pairs[current].chan, pairs[current].baud);
        ending = pair_search(command, pairs[current]);
    }
    stopped = true;
    last_outcome = ending;
    emit search_finished();
}

// Anything but Done ends the search.
CnetOutcome CnetCfg::pair_search(const CnetCommand& command, const CnetPair& pair)
{
    emit log(tr("cfg: searching chan %1 with %2 ...").arg(pair.chan).arg(baud_text(pair.baud)));
    if (local_chan_baud_set(pair.chan, pair.baud) != 0) {
        emit log(tr("cfg: set local device chan and baud failed"));
        return last_outcome;
    }
    cmd_send(command.code, command.targeted ? target : nullptr, nullptr, 0);
    return answers_read(command, pair);
}

// Anything but an answer, mostly a time-out, ends the pair.
CnetOutcome CnetCfg::answers_read(const CnetCommand& command, const CnetPair& pair)
{
    QByteArray record(command.response, '\0');
    while (resp_read(command.code, record.data(), command.response) == command.response) {
        answer_report(pair, record);
        msleep(ANSWER_PAUSE_MS);
        if (stopped)
            return CnetOutcome::Aborted;
    }
    return CnetOutcome::Done;
}

void CnetCfg::answer_report(const CnetPair& pair, const QByteArray& record)
{
    if (record.size() == sizeof(cnet_search_response)) {
        const auto resp = record_of<cnet_search_response>(record);
        emit dev_found(pair.chan, pair.baud, &resp);
    } else {
        const auto resp = record_of<cnet_search_response_ext>(record);
        emit dev_found(pair.chan, pair.baud, &resp);
    }
}
