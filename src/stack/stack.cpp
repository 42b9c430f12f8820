#include "stack/stack.h"

#include "links/qlinkserial.h"
#include "links/qlinktcpip.h"
#include "links/qlinkwinsock.h"
#include "stack/portproblem.h"

#include <QEventLoop>
#include <QFileInfo>
#include <future>

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

Stack::Stack(const StackDescription& description, ExchangeSink& log)
    : description(description.link)
    , log(log)
{
    add_link(description.timeout_ms);
    framers = std::make_unique<FramerStack>(*traced, description.framers);
    for (const auto& framer : framers->all())
        QObject::connect(
            framer.get(), &QFramer::log, framer.get(),
            [&log](const QString& text) { log.note(text); }, Qt::DirectConnection);
}

Stack::~Stack()
{
    if (traced->is_open())
        traced->close();
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
        throw open_problem();
}

void Stack::run_worker(QThread& worker, const std::function<void()>& start,
                       const std::function<void()>& give_up)
{
    QEventLoop loop;
    QObject::connect(&worker, &QThread::finished, &loop, &QEventLoop::quit);
    QThread* const home = link_object->thread();
    bool opened = false; // the worker's, which gives it back with the link
    std::promise<bool> given_back;
    const auto open_link = [this, &opened, &give_up] {
        opened = traced->open() == 0;
        if (!opened)
            give_up();
    };
    const auto close_link = [this, home, &opened, &given_back] {
        traced->close();
        link_object->moveToThread(home);
        given_back.set_value(opened);
    };
    QObject::connect(&worker, &QThread::started, &worker, open_link, Qt::DirectConnection);
    QObject::connect(&worker, &QThread::finished, &worker, close_link, Qt::DirectConnection);

    link_object->moveToThread(&worker);
    start();
    // The system may refuse another thread, and that one signals nothing.
    if (!worker.isRunning() && !worker.isFinished())
        throw LinkProblem{LinkTrouble::NoThread, target()};
    loop.exec();
    worker.wait();
    if (!given_back.get_future().get())
        throw open_problem();
}

LinkProblem Stack::open_problem() const
{
    if (const auto* serial = qobject_cast<const QLinkSerial*>(link_object.get()))
        return port_problem(description.port, serial->open_error(), serial->open_error_text());
    return {LinkTrouble::NoConnection, target()};
}

QString Stack::target() const
{
    return description.kind == LinkKind::Serial ? description.port : link_name(description);
}

bool Stack::connection_lost() const
{
    if (traced->failed())
        return true;
    // The other side may have closed it while nobody was reading.
    const auto* const tcp = qobject_cast<const QLinkTcpip*>(link_object.get());
    return tcp && description.kind == LinkKind::Tcp && traced->is_open() && !tcp->connected();
}

bool Stack::port_gone() const
{
    return description.kind == LinkKind::Serial && description.port.startsWith('/') &&
           !QFileInfo::exists(description.port);
}

LinkProblem Stack::trouble() const
{
    if (port_gone())
        return {LinkTrouble::PortGone, target()};
    // A connection that ended after an answer doesn't explain the answer.
    if (traced->failed() || (traced->silent() && connection_lost()))
        return {LinkTrouble::ConnectionLost, target()};
    return {traced->silent() ? LinkTrouble::NoAnswer : LinkTrouble::BadAnswer, target()};
}
