#include "workbench/cnetblockrun.h"

#include <array>
#include <cstring>

namespace {
using Words = std::array<std::uint32_t, CNET_BLOCK_WORDS>; // as they travel

bool is_long(const CnetPlace& place)
{
    return place.address.size() == CNET_LONG_ADDRESS;
}

void block_write(CnetCfg& cfg, const CnetPlace& place, const QByteArray& block)
{
    Words words = {};
    std::memcpy(words.data(), block.constData(), CNET_BLOCK_SIZE);
    const char* const address = place.address.constData();
    is_long(place) ? cfg.remote_cfg_set_ext(address, words.data())
                   : cfg.remote_cfg_set(address, words.data());
}

void block_read(CnetCfg& cfg, const CnetPlace& place, BlockReport& report)
{
    Words words = {};
    QByteArray extra(CNET_EXTRA_SIZE, '\0');
    const char* const address = place.address.constData();
    is_long(place) ? cfg.remote_cfg_get_ext(address, words.data(), extra.data())
                   : cfg.remote_cfg_get(address, words.data(), extra.data());
    if (cfg.outcome() != CnetOutcome::Done)
        return;
    report.block = QByteArray(reinterpret_cast<const char*>(words.data()), CNET_BLOCK_SIZE);
    report.extra = extra;
}
} // namespace

void CnetBlockRun::start(LinkWorker& link, const CnetPlace& place, const QByteArray& block)
{
    const auto report = std::make_shared<BlockReport>();
    task.start(
        link,
        [this, report, place, block](Stack* stack) {
            if (stack)
                *report = work(*stack, place, block);
        },
        [this, report] { emit ended(*report); });
}

BlockReport CnetBlockRun::work(Stack& stack, const CnetPlace& place, const QByteArray& block)
{
    CnetCfg cfg(&stack.link());
    connect(
        &cfg, &CnetCfg::log, &cfg, [&stack](const QString& line) { stack.sink().note(line); },
        Qt::DirectConnection);
    BlockReport report;
    for (const BlockStep step : {BlockStep::Tune, BlockStep::Write, BlockStep::Read}) {
        if (step == BlockStep::Write && block.isEmpty())
            continue;
        report.step = step;
        if (task.aborted()) {
            report.outcome = CnetOutcome::Aborted;
            break;
        }
        if (step == BlockStep::Tune)
            cfg.local_chan_baud_set(place.channel, place.rate);
        else if (step == BlockStep::Write)
            block_write(cfg, place, block);
        else
            block_read(cfg, place, report);
        report.outcome = cfg.outcome();
        if (!report.good())
            break;
    }
    report.link = stack.trouble();
    return report;
}
