#include "cli/stack.h"

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
#include <QSerialPort>
#include <algorithm>

namespace {
// The name of the port that a text names. Throws Failure when it fits several. One that is a path
// is taken as it is: should the port be missing, no other may take its place.
QString full_port_name(const QString& name)
{
    if (name.contains('/') || name.contains('\\'))
        return name;
    const QStringList found = ports_named(name, QextSerialEnumerator::getPorts());
    if (found.size() > 1)
        throw usage_failure("--link: " + name + " names " + QString::number(found.size()) +
                                " ports: " + found.join(", "),
                            "Give more of the name, or one of these. `tarnwickctl ports` shows "
                            "what is known of each.");
    return found.isEmpty() ? name : found[0];
}

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

const char LIST_ADVICE[] = "`tarnwickctl ports` lists the ports of this machine.";

// `error` and `reason` are the port's lastError() and errorString().
Failure port_failure(const QString& port, ulong error, const QString& reason)
{
    const QString what = "the port " + port + " can't be opened: ";
    switch (port_bar(port, {})) {
    case PortBar::Missing:
        return {ExitCode::Link, what + "there is no such port", LIST_ADVICE};
    case PortBar::NoPort:
        return {ExitCode::Link, what + "it is no serial port", LIST_ADVICE};
    case PortBar::Rights:
        return {ExitCode::Link, what + "permission denied", rights_advice(port)};
    case PortBar::Locked:
    case PortBar::None:
        break;
    }
    // The rights are there, so that somebody else has it.
    if (error == QSerialPort::PermissionError)
        return {ExitCode::Link, what + reason, busy_advice(port_holders(port))};
    if (error == QSerialPort::UnsupportedOperationError)
        return {ExitCode::Link, what + reason,
                "It may be no serial port, or need another rate or format in --link."};
    return {ExitCode::Link, what + reason,
            "Is the adapter all right, and does the port belong to a device? Plug the adapter in "
            "again, or take another port."};
}
} // namespace

Stack::Stack(const StackDescription& description, ExchangeLog& log)
    : description(description.link)
    , log(log)
{
    add_link(description.timeout_ms);
    framers.push_back(std::make_unique<QFramerNull>(traced.get()));
    for (const FramerDescription& framer : description.framers)
        add_framer(framer);
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

void Stack::add_framer(const FramerDescription& framer)
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
        rtu->slave_set(std::uint8_t(framer.number));
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
        cnet->target_set(std::uint16_t(framer.number));
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
    const QString peer =
        QStringLiteral("%1:%2").arg(description.host, QString::number(description.remote_port));
    return {ExitCode::Link, "no connection to " + peer,
            "Check that the device or gateway is on, that address and port are right, and that no "
            "firewall is between; a slow network needs a longer --timeout."};
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
