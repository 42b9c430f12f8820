#include "serialport/portwatch.h"

PortWatch& PortWatch::instance()
{
    // Never deleted: a port may be closed while the program's last objects go.
    static PortWatch& watch = *new PortWatch;
    return watch;
}

void PortWatch::add(const QString& port_name)
{
    {
        const std::lock_guard lock(mutex);
        names.append(port_name);
    }
    emit added(port_name);
}

void PortWatch::remove(const QString& port_name)
{
    {
        const std::lock_guard lock(mutex);
        names.removeOne(port_name);
    }
    emit removed(port_name);
}

QStringList PortWatch::open_ports() const
{
    const std::lock_guard lock(mutex);
    return names;
}
