// What the tests of the two network links need to know of either.
#pragma once

#include "qlinktcpip.h"
#include "qlinkwinsock.h"

#include <QStringList>
#include <cstring>

inline tcpip_cfg loopback(int port, int timeout_ms, int protocol = TCPIP_TCP_CLIENT)
{
    tcpip_cfg cfg = tcpip_defaults();
    std::strcpy(cfg.addr, "127.0.0.1");
    cfg.remote_port = port;
    cfg.timeout = timeout_ms;
    cfg.protocol = protocol;
    return cfg;
}

template <typename Link> struct Traits;

template <> struct Traits<QLinkTcpip>
{
    static void log_data(QLinkTcpip& link) { link.verbose_set(true); }

    static constexpr int CLOSED_READLINE = LINK_CLOSED;
    static constexpr bool WRITES_AT_ONCE = true;
    static inline const QList<int> REFUSED_PROTOCOLS = {-1, 1, 3, 4, 5};
    static inline const QStringList CLOSED_LOG = {"tcpip: write failed, connection not opened",
                                                  "tcpip: readline failed, connection not opened"};
    static inline const QStringList REFUSED_LOG = {"tcpip: looking up host",
                                                   "tcpip: connecting ...", "tcpip: unconnected",
                                                   "tcpip: connected failed"};
    static inline const QStringList CLOSE_LOG = {"tcpip: closing ...", "tcpip: unconnected"};
    static inline const QStringList DATA_LOG = {"tcpip: write   (68 69)",    "tcpip: putchar (21)",
                                                "tcpip: read    (41 00 FF)", "tcpip: getchar (0a)",
                                                "tcpip: drop 3 bytes",       "tcpip: read    ()"};
};

template <> struct Traits<QLinkWinsock>
{
    static void log_data(QLinkWinsock& link) { link.log_hex_set(true); }

    static constexpr int CLOSED_READLINE = 0;
    static constexpr bool WRITES_AT_ONCE = false;
    static inline const QList<int> REFUSED_PROTOCOLS = {-1, 1};
    static inline const QStringList CLOSED_LOG = {"tcpip: write failed, connection not opened"};
    static inline const QStringList REFUSED_LOG = {"tcpip: connect to host 127.0.0.1:%1 failed"};
    static inline const QStringList CLOSE_LOG = {};
    static inline const QStringList DATA_LOG = {
        "tcpip: write   [68 69]",   "tcpip: write   [21]", "tcpip: putchar [21]",
        "tcpip: read(3)[41 00 FF]", "tcpip: read(1)[0A]",  "tcpip: getchar [0a]",
        "tcpip: read(3)[78 79 7A]", "tcpip: drop 3 bytes", "tcpip: read(0)[]"};
};
