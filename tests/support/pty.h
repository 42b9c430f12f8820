// A real kernel tty with the test on its other side, and bytes to send.
#pragma once

#include "wait.h"

#include <QFile>
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <random>
#include <stdexcept>
#include <termios.h>
#include <utility>

class Pty
{
public:
    Pty()
    {
        const int fd = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (grantpt(fd) != 0 || unlockpt(fd) != 0 ||
            !master.open(fd, QIODevice::ReadWrite | QIODevice::Unbuffered, QFile::AutoCloseHandle))
            throw std::runtime_error("no pseudo-terminal");
        slave_path = QString::fromLocal8Bit(ptsname(fd));
        // Raw from the start, so that bytes written before the port is opened are neither echoed
        // nor changed.
        termios raw = settings();
        cfmakeraw(&raw);
        tcsetattr(fd, TCSANOW, &raw);
    }
    ~Pty() { unlink(); }

    QString device() const { return slave_path; }
    int master_fd() const { return master.handle(); }
    // The terminal settings of the port's side.
    termios settings() const
    {
        termios tio = {};
        tcgetattr(master_fd(), &tio);
        return tio;
    }

    // Links the tty into a folder of virtual ports; returns the link's path. The destructor removes
    // it.
    QString link_into(const QString& folder, const QString& name)
    {
        unlink();
        link_path = folder + "/" + name;
        QFile::link(slave_path, link_path);
        return link_path;
    }
    void unlink()
    {
        if (!link_path.isEmpty())
            QFile::remove(std::exchange(link_path, {}));
    }
    // Closes the test's side: the port under test sees a hang-up, as when an adapter is pulled out.
    void hang_up() { master.close(); }

    // Writes all bytes, running the event loop while the other side's buffer is full.
    bool write(QByteArray data)
    {
        const auto all_gone = [&] {
            data.remove(0, int(qMax(qint64(0), master.write(data))));
            return data.isEmpty();
        };
        return wait_until(all_gone, 10 * PATIENCE_MS); // it may be megabytes
    }
    // What has arrived by now, at most `most` bytes; never blocks.
    QByteArray read_now(int most = 65536) { return master.read(most); }
    // Reads with the event loop running until `count` bytes have come or the patience is over.
    QByteArray read(int count, int patience_ms = PATIENCE_MS)
    {
        QByteArray data;
        wait_until([&] { return (data += read_now()).size() >= count; }, patience_ms);
        return data;
    }

private:
    QFile master;
    QString slave_path;
    QString link_path;
};

// Bytes of all values, the same at each run.
inline QByteArray mixed_bytes(int count, std::uint32_t seed = 1)
{
    QByteArray bytes(count, Qt::Uninitialized);
    std::mt19937 random(seed);
    std::generate(bytes.begin(), bytes.end(), [&] { return char(random() & 0xFF); });
    return bytes;
}
