// A byte link over a serial port.
#pragma once

#include "qextserialenumerator.h"
#include "qextserialport.h"
#include "qlink.h"

// The lines of QLinkSerial::log.
//
//   ALREADY_OPEN   open on an open link
//   OPEN_FAILED    open; %1 the port's name
//   GETCHAR        verbose, a byte was read; %1 the byte in hexadecimal, at least 2 digits
//   PUTCHAR        verbose, a byte was written; %1 the argument of putchar, in the same form
//   READ, WRITE, READLINE   verbose, bytes were moved; %1 hex_text of them
namespace serial_log {
constexpr char ALREADY_OPEN[] = QT_TRANSLATE_NOOP("QLinkSerial", "Serial port already opened");
constexpr char OPEN_FAILED[] = QT_TRANSLATE_NOOP("QLinkSerial", "Open %1 failed");
constexpr char GETCHAR[] = QT_TRANSLATE_NOOP("QLinkSerial", "ser: getchar (%1)");
constexpr char PUTCHAR[] = QT_TRANSLATE_NOOP("QLinkSerial", "ser: putchar (%1)");
constexpr char READ[] = QT_TRANSLATE_NOOP("QLinkSerial", "ser: read    (%1)");
constexpr char WRITE[] = QT_TRANSLATE_NOOP("QLinkSerial", "ser: write   (%1)");
constexpr char READLINE[] = QT_TRANSLATE_NOOP("QLinkSerial", "ser: readline(%1)");
} // namespace serial_log

// The port works in polling mode: each operation is one call into it and takes at most the time-out
// of the port settings, without an event loop. The link may be opened on one thread and driven from
// another, by one thread at a time.
//
//   operation         closed        open
//   open              0, LINK_AGAIN LINK_FAILED, and the link stays as it is
//   is_open           false         true until close, also when the device has gone
//   close             LINK_CLOSED   0
//   bytes_available   LINK_CLOSED   count
//   getchar           LINK_CLOSED   byte; the port's lastError negated when none came: 0 for a mere
//                                   time-out, not to be told from a byte 0
//   putchar           LINK_CLOSED   the argument; the port's lastError negated
//   read              LINK_CLOSED   bytes that came within the time-out; -1 when the device has
//                                   gone and all that it sent has been read
//   write             LINK_CLOSED   bytes that went out within the time-out; -1 on a lost device
//   can_read_line     false         whether a line feed waits
//   readline          LINK_CLOSED   as read
class QLinkSerial : public QObject, public QLink
{
    Q_OBJECT
    Q_INTERFACES(QLink)

public:
    // `port_name` as QextSerialPort takes it. `verbose`: log every data operation. Opens nothing.
    QLinkSerial(const QString& port_name, const PortSettings& port_settings, bool verbose);
    ~QLinkSerial() override;

    int open() override;
    bool is_open() override;
    int close() override;
    void flush() override;
    int bytes_available() override;
    int getchar() override;
    int putchar(int c) override;
    int read(char* buffer, int nbytes) override;
    int write(const char* buffer, int nbytes) override;
    bool can_read_line() override;
    int readline(char* buffer, int size) override;

signals:
    void log(QString s);
    // The device of this link has gone. The link stays open until its owner closes it, which may
    // happen inside this signal. Comes only while the thread that called open runs an event loop.
    void removed();

private slots:
    void dev_remove(QextPortInfo info);

private:
    void delete_enumerator();
    void log_bytes(const char* text, const char* bytes, qint64 count);

    QextSerialPort* port = nullptr;             // set while open; owned
    QextSerialEnumerator* enumerator = nullptr; // set while open; owned
    const QString port_name;
    const PortSettings port_settings;
    const bool verbose;
};
