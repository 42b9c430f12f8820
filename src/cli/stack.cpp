#include "cli/stack.h"

#include "cli/boundedcnet.h"
#include "cli/portfailure.h"
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
// The path of a port that is named by its last part alone, such as ttyUSB0 or boot.
QString full_port_name(const QString& name)
{
    if (name.contains('/') || name.contains('\\'))
        return name;
    for (const QextPortInfo& port : QextSerialEnumerator::getPorts()) {
        if (port.portName == name || port.portName.endsWith('/' + name))
            return port.portName;
    }
    return name;
}

tcpip_cfg network_settings(const LinkSpec& link, int timeout_ms)
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
} // namespace

Stack::Stack(const StackSpec& spec, ExchangeLog& log)
    : spec(spec.link)
    , log(log)
{
    add_link(spec);
    framers.push_back(std::make_unique<QFramerNull>(traced.get()));
    for (const FramerSpec& framer : spec.framers)
        add_framer(framer);
    for (const auto& framer : framers)
        QObject::connect(
            framer.get(), &QFramer::log, framer.get(),
            [&log](const QString& text) { log.told(text); }, Qt::DirectConnection);
}

Stack::~Stack()
{
    if (traced->is_open())
        traced->close();
    while (!framers.empty())
        framers.pop_back();
}

void Stack::add_link(const StackSpec& stack)
{
    const auto own = [this](auto* link) {
        link_object.reset(link);
        QObject::connect(
            link, &std::remove_pointer_t<decltype(link)>::log, link,
            [this](const QString& text) { log.told(text); }, Qt::DirectConnection);
        traced = std::make_unique<TracedLink>(*link, log);
    };
    if (spec.kind == LinkKind::Serial) {
        spec.port = full_port_name(spec.port);
        spec.settings.Timeout_Millisec = stack.timeout_ms;
        own(new QLinkSerial(spec.port, spec.settings, false));
        return;
    }
    const tcpip_cfg settings = network_settings(spec, stack.timeout_ms);
    if (spec.kind == LinkKind::Tcp || spec.kind == LinkKind::Udp)
        own(new QLinkTcpip(&settings));
    else
        own(new QLinkWinsock(&settings));
}

void Stack::add_framer(const FramerSpec& framer)
{
    QFramer* lower = framers.back().get();
    switch (framer.kind) {
    case FramerKind::None:
        break;
    case FramerKind::Crc16:
        framers.push_back(std::make_unique<QFramerCrc16>(lower));
        break;
    case FramerKind::Rtu: {
        auto rtu = std::make_unique<QFramerRtu>(lower);
        rtu->slave_set(quint8(framer.number));
        framers.push_back(std::move(rtu));
        break;
    }
    case FramerKind::Chan: {
        auto chan = std::make_unique<QFramerChan>(lower);
        chan->chan_set(framer.prefix.constData(), unsigned(framer.prefix.size()));
        framers.push_back(std::move(chan));
        break;
    }
    case FramerKind::Cnet: {
        auto cnet = std::make_unique<BoundedCnet>(lower);
        cnet->target_set(quint16(framer.number));
        framers.push_back(std::move(cnet));
        break;
    }
    case FramerKind::Rwlt:
        framers.push_back(std::make_unique<QFramerRwlt>(lower));
        break;
    case FramerKind::Dorv: {
        auto dorv = std::make_unique<QFramerDorv>(lower);
        dorv->link_set(traced.get());
        dorv->raw_set(framer.number == DORV_RAW);
        if (framer.number != DORV_RAW)
            dorv->mode_set(framer.number);
        framers.push_back(std::move(dorv));
        break;
    }
    }
}

void Stack::open()
{
    if (traced->open() != 0)
        throw open_failure();
}

void Stack::run_worker(QThread& worker, const std::function<void()>& start,
                       const std::function<void(bool)>& opened)
{
    QEventLoop loop;
    QObject::connect(&worker, &QThread::finished, &loop, &QEventLoop::quit);
    QThread* const home = link_object->thread();
    const auto open_link = [this, &opened] { opened(traced->open() == 0); };
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
}

Failure Stack::open_failure() const
{
    if (const auto* serial = qobject_cast<const QLinkSerial*>(link_object.get()))
        return port_failure(spec.port, serial->open_error(), serial->open_error_text());
    const QString peer = QStringLiteral("%1:%2").arg(spec.host, QString::number(spec.remote_port));
    return {ExitCode::Link, "no connection to " + peer,
            "Check that the device or gateway is on, that address and port are right, and that no "
            "firewall is between; a slow network needs a longer --timeout."};
}

Failure Stack::no_answer(const QString& what, const QString& advice) const
{
    const bool port_gone =
        spec.kind == LinkKind::Serial && spec.port.startsWith('/') && !QFileInfo::exists(spec.port);
    if (port_gone)
        return {ExitCode::Link, what + ": the port " + spec.port + " has gone",
                "Plug the adapter in again, and start anew."};
    if (traced->failed())
        return {ExitCode::Link, what + ": the connection is lost",
                "Check the cable or the network, and start anew."};
    if (!traced->last_received().isEmpty())
        return {ExitCode::BadAnswer, what + ": what came is no answer to it",
                "The rate, the format or --frame may be wrong, or the line is noisy; -v shows the "
                "bytes."};
    return {ExitCode::NoAnswer, what + ": nothing came in time", advice};
}
