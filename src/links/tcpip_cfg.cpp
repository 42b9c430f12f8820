#include "links/tcpip_cfg.h"

tcpip_cfg tcpip_defaults()
{
    return {TCPIP_V4, TCPIP_TCP_CLIENT, "192.168.0.1", 4001, 0, true, 500};
}

tcpip_cfg tcpip_settings(const tcpip_cfg* cfg)
{
    tcpip_cfg kept = cfg ? *cfg : tcpip_defaults();
    kept.addr[sizeof kept.addr - 1] = '\0';
    return kept;
}
