#include "stack/framerstack.h"

#include "framers/qframerchan.h"
#include "framers/qframercrc16.h"
#include "framers/qframerdorv.h"
#include "framers/qframernull.h"
#include "framers/qframerrtu.h"
#include "framers/qframerrwlt.h"
#include "stack/boundedcnet.h"

FramerStack::FramerStack(QLink& link, const QVector<FramerDescription>& descriptions)
    : link(link)
{
    framers.push_back(std::make_unique<QFramerNull>(&link));
    for (const FramerDescription& framer : descriptions)
        add(framer);
}

// The highest goes first.
FramerStack::~FramerStack()
{
    while (!framers.empty())
        framers.pop_back();
}

template <typename Framer> Framer& FramerStack::add()
{
    QFramer* const lower = framers.back().get();
    auto framer = std::make_unique<Framer>(lower);
    Framer& added = *framer;
    framers.push_back(std::move(framer));
    return added;
}

void FramerStack::add(const FramerDescription& framer)
{
    switch (framer.kind) {
    case FramerKind::None:
        break;
    case FramerKind::Crc16:
        add<QFramerCrc16>();
        break;
    case FramerKind::Rtu:
        add<QFramerRtu>().slave_set(std::uint8_t(framer.number));
        break;
    case FramerKind::Chan:
        add<QFramerChan>().chan_set(framer.prefix.constData(), unsigned(framer.prefix.size()));
        break;
    case FramerKind::Cnet:
        add<BoundedCnet>().target_set(std::uint16_t(framer.number));
        break;
    case FramerKind::Rwlt:
        add<QFramerRwlt>();
        break;
    case FramerKind::Dorv: {
        auto& dorv = add<QFramerDorv>();
        dorv.link_set(&link);
        dorv.raw_set(framer.number == DORV_RAW);
        if (framer.number != DORV_RAW)
            dorv.mode_set(framer.number);
        break;
    }
    }
}
