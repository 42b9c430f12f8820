#include "links/tcpip_cfg.h"

tcpip_cfg tcpip_defaults()
{
    return {TCPIP_V4, TCPIP_TCP_CLIENT, "192.168.0.1", 4001, 0, true, 500};
}
