#include "stack/cnetsearch.h"

void on_cnet_found(
    CnetCfg& cfg, const std::function<void(int channel, int rate, const QByteArray& answer)>& found)
{
    const auto receiver = [found](int channel, int rate, const auto* answer) {
        found(channel, rate,
              QByteArray(reinterpret_cast<const char*>(answer->bytes), sizeof answer->bytes));
    };
    QObject::connect(&cfg, qOverload<int, int, const cnet_search_response*>(&CnetCfg::dev_found),
                     &cfg, receiver, Qt::DirectConnection);
    QObject::connect(&cfg,
                     qOverload<int, int, const cnet_search_response_ext*>(&CnetCfg::dev_found),
                     &cfg, receiver, Qt::DirectConnection);
}
