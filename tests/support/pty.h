// A real kernel tty with the test on its other side.
#pragma once

#include <QByteArray>
#include <QString>
#include <termios.h>

class Pty
{
public:
    Pty();
    ~Pty();
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;

    QString device() const { return slave_path; }
    int master_fd() const { return master; }

    // Links the tty into a folder of virtual ports; returns the link's path. The destructor removes
    // it.
    QString link_into(const QString& folder, const QString& name);
    void unlink();
    // Closes the test's side: the port under test sees a hang-up, as when an adapter is pulled out.
    void hang_up();

    // Writes all bytes, running the event loop while the other side's buffer is full.
    bool write(const QByteArray& data);
    // What has arrived by now, at most `most` bytes; never blocks.
    QByteArray read_now(int most = 65536);
    // Reads with the event loop running until `count` bytes have come or the patience is over.
    QByteArray read(int count, int patience_ms = 20000);
    // The terminal settings of the port's side.
    termios settings() const;

private:
    int master = -1;
    QString slave_path;
    QString link_path;
};
