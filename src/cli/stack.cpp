#include "cli/stack.h"

#include "cli/boundedcnet.h"
#include "cli/portadvice.h"
#include "framers/qframerchan.h"
#include "framers/qframercrc16.h"
#include "framers/qframerdorv.h"
#include "framers/qframernull.h"
#include "framers/qframerrtu.h"
#include "framers/qframerrwlt.h"
#include "links/qlinkserial.h"
#include "links/qlinktcpip.h"
#include "links/qlinkwinsock.h"
#include "serialport/qextserialenumerator.h"

#include <QEventLoop>
#include <QFileInfo>

namespace {
tcpip_cfg network_settings(const LinkDescription& link, int timeout_ms)
{
    tcpip_cfg settings = tcpip_defaults();
    const QByteArray host = link.host.toLatin1();
    qstrncpy(settings.addr, host.constData(), sizeof settings.addr);
    settings.remote_port = link.remote_port;
    settings.timeout = timeout_ms;
    switch (link.kind) {
    case LinkKind::Udp:
    case LinkKind::RawUdp:
        settings.protocol = TCPIP_UDP;
        break;
    case LinkKind::Broadcast:
        settings.protocol = TCPIP_UDP_BROADCAST;
        break;
    default:
        settings.protocol = TCPIP_TCP_CLIENT;
        break;
    }
    return settings;
}

using Framers = std::vector<std::unique_ptr<QFramer>>;

// Puts a new framer on top.
template <typename Framer> Framer& add(Framers& framers)
{
    QFramer* const lower = framers.back().get();
    auto framer = std::make_unique<Framer>(lower);
    Framer& added = *framer;
    framers.push_back(std::move(framer));
    return added;
}

void add_framer(Framers& framers, const FramerDescription& framer, QLink& link)
{
    switch (framer.kind) {
    case FramerKind::None:
        break;
    case FramerKind::Crc16:
        add<QFramerCrc16>(framers);
        break;
    case FramerKind::Rtu:
        add<QFramerRtu>(framers).slave_set(std::uint8_t(framer.number));
        break;
    case FramerKind::Chan:
        add<QFramerChan>(framers).chan_set(framer.prefix.constData(),
                                           unsigned(framer.prefix.size()));
        break;
    case FramerKind::Cnet:
        add<BoundedCnet>(framers).target_set(std::uint16_t(framer.number));
        break;
    case FramerKind::Rwlt:
        add<QFramerRwlt>(framers);
        break;
    case FramerKind::Dorv: {
        auto& dorv = add<QFramerDorv>(framers);
        dorv.link_set(&link);
        dorv.raw_set(framer.number == DORV_RAW);
        if (framer.number != DORV_RAW)
            dorv.mode_set(framer.number);
        break;
    }
    }
}
} // namespace

std::vector<std::unique_ptr<QFramer>> make_framers(QLink& link,
                                                   const QVector<FramerDescription>& descriptions)
{
    std::vector<std::unique_ptr<QFramer>> framers;
    framers.push_back(std::make_unique<QFramerNull>(&link));
    for (const FramerDescription& description : descriptions)
        add_framer(framers, description, link);
    return framers;
}

Stack::Stack(const StackDescription& description, ExchangeLog& log)
    : description(description.link)
    , log(log)
{
    add_link(description.timeout_ms);
    framers = make_framers(*traced, description.framers);
    for (const auto& framer : framers)
        QObject::connect(
            framer.get(), &QFramer::log, framer.get(),
            [&log](const QString& text) { log.note(text); }, Qt::DirectConnection);
}

Stack::~Stack()
{
    if (traced->is_open())
        traced->close();
    while (!framers.empty())
        framers.pop_back();
}

void Stack::add_link(int timeout_ms)
{
    const auto own = [this](auto* link) {
        link_object.reset(link);
        QObject::connect(
            link, &std::remove_pointer_t<decltype(link)>::log, link,
            [this](const QString& text) { log.note(text); }, Qt::DirectConnection);
        traced = std::make_unique<TracedLink>(*link, log);
    };
    if (description.kind == LinkKind::Serial) {
        description.port = full_port_name(description.port);
        description.settings.Timeout_Millisec = timeout_ms;
        own(new QLinkSerial(description.port, description.settings, false));
        return;
    }
    const tcpip_cfg settings = network_settings(description, timeout_ms);
    if (description.kind == LinkKind::Tcp || description.kind == LinkKind::Udp)
        own(new QLinkTcpip(&settings));
    else
        own(new QLinkWinsock(&settings));
}

void Stack::open()
{
    if (traced->open() != 0)
        throw open_failure();
}

void Stack::run_worker(QThread& worker, const std::function<void()>& start,
                       const std::function<void()>& give_up)
{
    QEventLoop loop;
    QObject::connect(&worker, &QThread::finished, &loop, &QEventLoop::quit);
    QThread* const home = link_object->thread();
    std::atomic<bool> opened{false};
    const auto open_link = [this, &opened, &give_up] {
        opened = traced->open() == 0;
        if (!opened)
            give_up();
    };
    const auto close_link = [this, home] {
        traced->close();
        link_object->moveToThread(home);
        given_back.store(true, std::memory_order_release);
    };
    QObject::connect(&worker, &QThread::started, &worker, open_link, Qt::DirectConnection);
    QObject::connect(&worker, &QThread::finished, &worker, close_link, Qt::DirectConnection);

    link_object->moveToThread(&worker);
    start();
    // The system may refuse another thread, and that one signals nothing.
    if (!worker.isRunning() && !worker.isFinished())
        throw Failure{ExitCode::Link, "the system starts no thread for the link",
                      "End other programs, or raise the limits that `ulimit -a` shows."};
    loop.exec();
    worker.wait();
    while (!given_back.load(std::memory_order_acquire))
        QThread::yieldCurrentThread();
    if (!opened)
        throw open_failure();
}

Failure Stack::open_failure() const
{
    if (const auto* serial = qobject_cast<const QLinkSerial*>(link_object.get()))
        return port_failure(description.port, serial->open_error(), serial->open_error_text());
    return network_failure(
        QStringLiteral("%1:%2").arg(description.host, QString::number(description.remote_port)));
}

bool Stack::port_gone() const
{
    return description.kind == LinkKind::Serial && description.port.startsWith('/') &&
           !QFileInfo::exists(description.port);
}

Failure Stack::no_answer(const QString& what, const QString& advice) const
{
    if (port_gone())
        return {ExitCode::Link, what + ": the port " + description.port + " has gone",
                "Plug the adapter in again, and start anew."};
    if (traced->failed())
        return {ExitCode::Link, what + ": the connection is lost",
                "Check the cable or the network, and start anew."};
    if (!traced->silent())
        return {ExitCode::BadAnswer, what + ": what came is no answer to it",
                "The rate, the format or --frame may be wrong, or the line is noisy; -v shows the "
                "bytes."};
    return {ExitCode::NoAnswer, what + ": nothing came in time", advice};
}
