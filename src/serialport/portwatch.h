// The news of open ports, from the ports to all enumerators of the process.
#pragma once

#include <QObject>
#include <QStringList>
#include <mutex>

// A port sees a hang-up before any folder changes, and a folder may not change at all: a link to a
// pseudo-terminal outlives it. So the port speaks up, on whatever thread it notices. One that is
// polled notices only when it is used, so the enumerators look after the devices of open ports too.
class PortWatch : public QObject
{
    Q_OBJECT

public:
    static PortWatch& instance();

    void add(const QString& port_name);
    void remove(const QString& port_name);
    QStringList open_ports() const;

signals:
    void added(QString port_name);
    void removed(QString port_name);
    void lost(QString port_name);
    // The same, inside a call of the port's user: to be connected queued, as a receiver may delete
    // the port.
    void lost_in_call(QString port_name);

private:
    mutable std::mutex mutex;
    QStringList names; // guarded by `mutex`
};
