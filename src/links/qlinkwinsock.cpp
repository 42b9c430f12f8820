#include "links/qlinkwinsock.h"

#include "checksum/hextext.h"
#include "links/winsock.h"

#include <QByteArray>
#include <QDeadlineTimer>

namespace {

constexpr std::uint16_t SOCKETS_VERSION = 0x0202;

bool set_option(qintptr sock, int option, int value)
{
    return winsock::setsockopt(SOCKET(sock), SOL_SOCKET, option,
                               reinterpret_cast<const char*>(&value), sizeof value) != SOCKET_ERROR;
}

// The text that devices mean: it ends at the first NUL.
QString text_of(const char* bytes, int nbytes)
{
    return QString::fromUtf8(bytes, int(qstrnlen(bytes, uint(qMax(0, nbytes)))));
}

} // namespace

QLinkWinsock::QLinkWinsock(const tcpip_cfg* cfg)
    : remote(std::make_unique<sockaddr_in>())
{
    settings_set(cfg);
}

QLinkWinsock::~QLinkWinsock()
{
    QLinkWinsock::close();
}

void QLinkWinsock::settings_set(const tcpip_cfg* cfg)
{
    this->cfg = tcpip_settings(cfg);
}

void QLinkWinsock::log_hex_set(bool on)
{
    log_hex = on;
}

void QLinkWinsock::log_text_set(bool on)
{
    log_text = on;
}

int QLinkWinsock::open()
{
    close();
    winsock::WSADATA data;
    if (const int error = winsock::WSAStartup(SOCKETS_VERSION, &data)) {
        emit log(tr("winsock: WSAStartup failed"));
        return error;
    }
    if (const int error = create_socket()) {
        winsock::WSACleanup(); // close() does it only for a socket
        return error;
    }

    *remote = {};
    remote->sin_family = AF_INET;
    remote->sin_port = winsock::htons(std::uint16_t(cfg.remote_port));
    remote->sin_addr.s_addr =
        cfg.protocol == TCPIP_UDP_BROADCAST ? INADDR_BROADCAST : winsock::inet_addr(cfg.addr);
    if (const char* const line = refused_option())
        return fail(tr(line));
    if (stream && winsock::connect(SOCKET(sock), reinterpret_cast<const sockaddr*>(remote.get()),
                                   sizeof *remote) == SOCKET_ERROR)
        return fail(tr("tcpip: connect to host %1:%2 failed")
                        .arg(QString::fromLatin1(cfg.addr), QString::number(cfg.remote_port)));
    return 0;
}

bool QLinkWinsock::is_open()
{
    return SOCKET(sock) != INVALID_SOCKET;
}

int QLinkWinsock::close()
{
    if (!is_open())
        return 0;
    winsock::closesocket(SOCKET(sock));
    winsock::WSACleanup();
    sock = -1;
    return 0;
}

void QLinkWinsock::flush()
{
    // Often the next datagram is all that is reported, so again and again; but they may come as
    // fast as they are dropped.
    const QDeadlineTimer deadline(qMax(1, cfg.timeout));
    int dropped = 0;
    int count = 0;
    do {
        const int waiting = bytes_available();
        if (waiting <= 0)
            break;
        QByteArray scratch(waiting, Qt::Uninitialized);
        count = read(scratch.data(), waiting);
        dropped += count;
    } while (count > 0 && !stream && !deadline.hasExpired());
    if (log_hex && dropped > 0)
        emit log(tr("tcpip: drop %1 bytes").arg(dropped));
}

int QLinkWinsock::bytes_available()
{
    if (!is_open())
        return LINK_CLOSED;
    unsigned long count = 0;
    winsock::ioctlsocket(SOCKET(sock), FIONREAD, &count);
    return int(count);
}

int QLinkWinsock::getchar()
{
    if (!is_open())
        return LINK_CLOSED;
    char byte = 0;
    if (read(&byte, 1) == 0)
        return LINK_IO;
    if (log_hex)
        emit log(tr("tcpip: getchar [%1]").arg(std::uint8_t(byte), 2, 16, QChar('0')));
    return std::uint8_t(byte);
}

int QLinkWinsock::putchar(int c)
{
    if (!is_open())
        return LINK_CLOSED;
    const char byte = char(c & 0xFF);
    if (write(&byte, 1) <= 0)
        return LINK_IO;
    if (log_hex)
        emit log(tr("tcpip: putchar [%1]").arg(c, 2, 16, QChar('0')));
    return c;
}

int QLinkWinsock::read(char* buffer, int nbytes)
{
    if (!is_open())
        return LINK_CLOSED;
    int count = 0;
    int result = 0;
    while (count < nbytes) {
        char* const end = buffer + count;
        const int missing = nbytes - count;
        result = stream ? winsock::recv(SOCKET(sock), end, missing, 0)
                        : winsock::recvfrom(SOCKET(sock), end, missing, 0, nullptr, nullptr);
        if (result <= 0)
            break;
        count += result;
    }
    if (log_hex)
        emit log(tr("tcpip: read(%1)[%2]").arg(QString::number(result), hex_text(buffer, count)));
    if (log_text && count < nbytes) {
        buffer[count] = '\0';
        emit log(tr("tcpip: read(%1)[%2]").arg(QString::number(result), text_of(buffer, count)));
    }
    return count;
}

int QLinkWinsock::write(const char* buffer, int nbytes)
{
    if (!is_open()) {
        emit log(tr("tcpip: write failed, connection not opened"));
        return LINK_CLOSED;
    }
    if (log_hex)
        emit log(tr("tcpip: write   [%1]").arg(hex_text(buffer, nbytes)));
    if (log_text)
        emit log(tr("tcpip: write   [%1]").arg(text_of(buffer, nbytes)));
    return stream
               ? winsock::send(SOCKET(sock), buffer, nbytes, 0)
               : winsock::sendto(SOCKET(sock), buffer, nbytes, 0,
                                 reinterpret_cast<const sockaddr*>(remote.get()), sizeof *remote);
}

int QLinkWinsock::create_socket()
{
    if (cfg.protocol == TCPIP_TCP_SERVER || cfg.protocol < 0) {
        emit log(tr("tcpip: protocol not supported"));
        return LINK_FAILED;
    }
    stream = cfg.protocol == TCPIP_TCP_CLIENT;
    sock = qintptr(winsock::socket(AF_INET, stream ? SOCK_STREAM : SOCK_DGRAM, 0));
    if (is_open())
        return 0;
    emit log(tr("tcpip: create socket failed"));
    return LINK_FAILED;
}

const char* QLinkWinsock::refused_option()
{
    if (!set_option(sock, SO_SNDTIMEO, cfg.timeout))
        return QT_TR_NOOP("tcpip: set socket sending timeout failed");
    if (!set_option(sock, SO_RCVTIMEO, cfg.timeout))
        return QT_TR_NOOP("tcpip: set socket receiving timeout failed");
    if (cfg.protocol == TCPIP_UDP_BROADCAST && !set_option(sock, SO_BROADCAST, 1))
        return QT_TR_NOOP("tcpip: set socket broadcast opt failed");
    return nullptr;
}

int QLinkWinsock::fail(const QString& line)
{
    emit log(line);
    close();
    return LINK_FAILED;
}
