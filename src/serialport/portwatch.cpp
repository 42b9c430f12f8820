#include "portwatch.h"

Q_GLOBAL_STATIC(PortWatch, port_watch)

PortWatch& PortWatch::instance()
{
    return *port_watch;
}
