#include "cli/stack.h"

#include "cli/boundedcnet.h"
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

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QSerialPort>
#include <algorithm>

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

bool has_open(const QFileInfoList& files, const QString& device)
{
    return std::any_of(files.cbegin(), files.cend(),
                       [&](const QFileInfo& file) { return file.symLinkTarget() == device; });
}

// The other programs that have the device open, as in "picocom (4711)". Sees those that this user
// may look at, on systems with a /proc. Who made a pseudo-terminal has both sides open, and isn't
// meant.
QStringList holders(const QString& port)
{
    const QString device = QFileInfo(port).canonicalFilePath();
    QStringList found;
    for (const QString& pid : QDir("/proc").entryList({"[0-9]*"}, QDir::Dirs)) {
        const QDir process("/proc/" + pid);
        const auto files = QDir(process.filePath("fd")).entryInfoList(QDir::Files | QDir::System);
        const bool maker = has_open(files, "/dev/ptmx") || has_open(files, "/dev/pts/ptmx");
        QFile name(process.filePath("comm"));
        if (!maker && has_open(files, device) && name.open(QIODevice::ReadOnly))
            found.append(QString::fromLocal8Bit(name.readAll()).trimmed() + " (" + pid + ')');
    }
    return found;
}

QString busy_advice(const QString& port)
{
    const QStringList programs = holders(port);
    return programs.isEmpty()
               ? QString("Another program holds it: end that program, or take another port.")
               : "It is open in " + programs.join(", ") + ": end that, or take another port.";
}

// `error` and `reason` are the port's lastError() and errorString().
Failure port_failure(const QString& port, ulong error, const QString& reason)
{
    const QFileInfo file(port);
    const QString what = "the port " + port + " can't be opened: ";
    if (port.startsWith('/') ? !file.exists() : !port.startsWith("COM"))
        return {ExitCode::Link, what + "there is no such port", LIST_ADVICE};
    if (file.isFile() || file.isDir())
        return {ExitCode::Link, what + "it is no serial port", LIST_ADVICE};
    if (port.startsWith('/') && !(file.isReadable() && file.isWritable()))
        return {
            ExitCode::Link, what + "permission denied",
            "Ports belong to a group, mostly dialout: `sudo adduser $USER dialout`, then log in "
            "again."};
    // The rights are there, so that somebody else has it.
    if (error == QSerialPort::PermissionError)
        return {ExitCode::Link, what + reason, busy_advice(port)};
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

template <typename Framer> Framer& Stack::add()
{
    QFramer* const lower = framers.back().get();
    auto framer = std::make_unique<Framer>(lower);
    Framer& added = *framer;
    framers.push_back(std::move(framer));
    return added;
}

void Stack::add_framer(const FramerDescription& framer)
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
        dorv.link_set(traced.get());
        dorv.raw_set(framer.number == DORV_RAW);
        if (framer.number != DORV_RAW)
            dorv.mode_set(framer.number);
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
