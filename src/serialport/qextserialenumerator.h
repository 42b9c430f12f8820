// The serial ports of this machine, and the news of ports that come and go.
#pragma once

#include <QFileSystemWatcher>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

struct QextPortInfo
{
    QString portName;   // what QextSerialPort opens: a system location, /dev/ttyUSB0 or COM3
    QString physName;   // the device itself, links resolved
    QString friendName; // description for people
    QString enumName;   // the manufacturer, or "virtual"
    int vendorID;       // USB vendor, 0 where there is none
    int productID;      // USB product, 0 where there is none
};
Q_DECLARE_METATYPE(QextPortInfo)

// The order of port lists: COM2 before COM10, any other pair as strings.
bool port_name_less(const QString& a, const QString& b);

// Virtual ports: each entry of virtual_ports_folder() that leads to a tty is a port, named by its
// path. So pseudo-terminals, pairs made by socat, simulators and oddly named devices can be opened
// by whoever may make a link. The folder counts only when it belongs to the user and nobody else
// can write to it; the group may where the runtime directory is closed to it.
class QextSerialEnumerator : public QObject
{
    Q_OBJECT

public:
    explicit QextSerialEnumerator(QObject* parent = nullptr);
    ~QextSerialEnumerator() override;

    // Hardware and virtual ports; names that both begin with "COM" by their number, others as
    // strings.
    static QList<QextPortInfo> getPorts();

    // <runtime directory of the user>/tarnwick/ports
    static QString virtual_ports_folder();
    // Makes it, with no rights for others, if it is missing. False when there is none then that
    // counts.
    static bool virtual_ports_folder_make();

    // From now on the signals report each port that comes or goes. Needs an event loop on this
    // thread.
    void setUpNotifications();

signals:
    void deviceDiscovered(QextPortInfo info);
    void deviceRemoved(QextPortInfo info);

private:
    void look_at(const QString& folder);
    void compare();
    // An open port has lost its device: it is gone, whatever the folders say. Reports it once.
    void report_lost(const QString& port_name);
    // A port of this process that getPorts() may not list.
    void note_open(const QString& port_name);
    void watch_folders();
    QSet<QString> device_folders() const;

    QList<QextPortInfo> known;
    QStringList unlisted; // open ports that are not among the known ones
    QFileSystemWatcher watcher;
    QTimer timer; // for systems whose ports are no files
};
