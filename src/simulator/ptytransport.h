// A pseudo-terminal, linked under a name into the folder of virtual ports.
#pragma once

#include "serialport/filedescriptor.h"
#include "simulator/transport.h"

#include <QString>

// The simulator keeps the port's side open itself. So the tty stays raw, and a terminal program may
// close the port and open it again; who has it open is counted by the opens and closes that inotify
// reports. What waits to be read is dropped at the last close, as a serial port's driver does it.
class PtyTransport : public Transport
{
public:
    // Throws std::runtime_error, with a text for the user, when there can be no such port.
    explicit PtyTransport(const QString& name);
    ~PtyTransport() override;

    QByteArray address() const override;
    std::vector<pollfd> watched(bool reading, bool writing) const override;
    void update() override;
    bool connected() const override;
    QByteArray read(int most) override;
    int write(const QByteArray& bytes) override;
    // Takes the port away, as when an adapter is pulled out, and gives a new one the same name.
    void cut() override;

private:
    void open_tty();
    void make_link();
    void remove_link();

    QString link_path;
    QString tty_path;
    FileDescriptor master;
    FileDescriptor own_slave;
    FileDescriptor notify;
    int users = 0; // open file descriptions of the port besides our own
};
