#include "tools/cnetframe.h"

QByteArray cnet_request(std::uint8_t cmd, const void* target, const void* payload, int nbytes)
{
    QByteArray frame;
    frame.append(char(CNET_HEAD)).append(char(cmd));
    if (target != nullptr)
        frame.append(static_cast<const char*>(target), CNET_TARGET_SIZE);
    if (payload != nullptr && nbytes > 0)
        frame.append(static_cast<const char*>(payload), nbytes);
    return frame.append(char(CNET_END));
}

std::optional<CnetResponse> cnet_response(const QByteArray& frame)
{
    const int size = int(frame.size());
    if (size < CNET_FRAMING || std::uint8_t(frame[0]) != CNET_HEAD ||
        std::uint8_t(frame[size - 1]) != CNET_END)
        return std::nullopt;
    return CnetResponse{std::uint8_t(frame[1]), frame.mid(2, size - CNET_FRAMING)};
}

QVector<CnetPair> cnet_pairs(std::uint32_t chan_mask, std::uint32_t baud_mask)
{
    QVector<CnetPair> pairs;
    for (int baud = 0; baud < CNET_RATES; ++baud) {
        for (int i = 0; i < CNET_CHANNELS; ++i) {
            if ((baud_mask >> baud & 1U) != 0 && (chan_mask >> i & 1U) != 0)
                pairs.append({CNET_FIRST_CHANNEL + i, baud});
        }
    }
    return pairs;
}
