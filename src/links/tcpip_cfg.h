// Settings of a network link: filled by the TCP/IP page of the link dialog, taken by the network
// links.
#pragma once

enum TcpipVersion : int { TCPIP_V4 = 0, TCPIP_V6 = 1 };

enum TcpipProtocol : int {
    TCPIP_TCP_CLIENT = 0,
    TCPIP_TCP_SERVER = 1,
    TCPIP_UDP = 2,
    TCPIP_UDP_MULTICAST = 3,
    TCPIP_UDP_BROADCAST = 4,
};

struct tcpip_cfg
{
    int ip_version; // a TcpipVersion
    int protocol;   // a TcpipProtocol
    char addr[64];  // remote address, Latin-1; a link ends it at 63 characters
    int remote_port;
    int local_port;
    bool local_port_random;
    int timeout; // ms, for connecting and for each wait for bytes
};

// What a network link works with until it is set otherwise: TCP client of 192.168.0.1:4001, local
// port chosen by the system, 500 ms.
tcpip_cfg tcpip_defaults();

// The settings that a link keeps: those given, with an address that ends; the defaults for null.
tcpip_cfg tcpip_settings(const tcpip_cfg* cfg);
