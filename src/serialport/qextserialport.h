// A serial port as a QIODevice, in two query modes: event driven for a window, polling for a
// dialogue.
#pragma once

#include "serialport/linestatus.h"
#include "serialport/portsettings.h"

#include <QIODevice>
#include <QString>
#include <memory>

class EventPort;
class PolledPort;

// EventDriven: lives on the thread of an event loop; readyRead() announces what arrives. A read
//   gives what is there and never waits. write() never waits either: it takes all bytes, or gives
//   -1 on a port that has gone and when more than WRITE_LIMIT bytes would wait to go out. Nor does
//   close(): the port reads as closed at once, and a PortDrain lets accepted bytes out for at most
//   Timeout_Millisec, in the event loop, and discards the rest. It holds the device so long; an
//   open() of that device on the same thread first waits for what is left of that time, and so
//   does the end of the application.
// Polling: works without an event loop and, but for Windows, without a QCoreApplication, on any one
//   thread at a time, also another than the one that opened it. read(n) returns when n bytes have
//   come or Timeout_Millisec has run out, with what has come. write() returns when the system has
//   taken the bytes or Timeout_Millisec has run out, with the count of those that go out; the rest
//   is forgotten. close() lets the system send what it has taken for at most Timeout_Millisec and
//   discards the rest. A time-out of 0 moves what can be moved at once.
//
// An open port is locked against other programs: TIOCEXCL, a lock file and flock on POSIX.
//
// In both modes a device that goes away leaves the port open (isOpen() is the owner's state) but
// dead: reads give what had arrived, then 0 bytes (event driven) or -1 (polling); writes give -1;
// errorString() and lastError() say why; no CPU is used. Enumerators that watch are notified: by
// the first call that meets the loss, or before, when the node of the device goes away.
class QextSerialPort : public QIODevice
{
    Q_OBJECT

public:
    enum QueryMode { Polling, EventDriven };

    // Bytes of accepted, unsent data that an event-driven port holds at most: six minutes at
    // 115200. A single write to an idle port may be larger.
    static constexpr qint64 WRITE_LIMIT = 4LL * 1024 * 1024;

    QextSerialPort(const QString& name, const PortSettings& settings, QueryMode mode = EventDriven,
                   QObject* parent = nullptr);
    ~QextSerialPort() override;

    // False, with errorString(), when the device can't be opened, is locked by another program or
    // refuses one of the settings.
    bool open(OpenMode mode) override;
    void close() override;
    bool isSequential() const override;
    // Bytes that a read would give without waiting.
    qint64 bytesAvailable() const override;
    // Bytes accepted by write() and not yet handed to the system.
    qint64 bytesToWrite() const override;
    bool canReadLine() const override;
    // Drops what has arrived before the call and not been read, also what the system still holds of
    // it in polling mode. Never waits.
    void discardInput();

    // The state that the control lines get by open(); a line that is to be on is never off for a
    // moment. The Linux kernel raises both in its open of a device, so one that is to be off is on
    // until the next call of the system; this port makes it at once. A port without control lines
    // opens all the same, and lastError() is QSerialPort::UnsupportedOperationError then.
    void setLinesAtOpen(const LinesAtOpen& lines) { lines_at_open = lines; }
    // The LineStatus bits, those of the two lines out among them; -1 with errorString() on a port
    // that has no such lines, as a pseudo-terminal, and on one that is closed or gone.
    int lineStatus();
    // False, with errorString(), for the same reasons. With hardware flow control RTS belongs to
    // the driver, and what becomes of a wish here is up to it.
    bool setDtr(bool on = true);
    bool setRts(bool on = true);
    // Holds the line in the break state for this long. Polling: returns at the end, and first lets
    // the system send what it has taken, for at most Timeout_Millisec. Event driven: returns at
    // once, the event loop ends it; bytes on their way are damaged, so wait for bytesToWrite() to
    // be 0 where they matter. False, with errorString(), where none can be sent.
    bool breakSend(int ms);

    // What poll() and select() take, of a port in polling mode on POSIX; else -1. Its owner may
    // read from it instead of calling read(), not in turns with it.
    int descriptor() const;

    QString portName() const;
    PortSettings portSettings() const { return settings; }
    // Why the last operation that failed did: a QSerialPort::SerialPortError as a number, 0 for
    // none.
    ulong lastError() const;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 maxSize) override;

private:
    bool open_event(OpenMode mode);
    bool open_polled(OpenMode mode);
    bool set_line(LineStatus line, bool on);
    bool report_unless(bool done);
    void report(ulong error, const QString& text);

    QString name;
    PortSettings settings;
    QueryMode mode;
    LinesAtOpen lines_at_open;
    EventPort* event_port = nullptr;         // a child; set while open in event-driven mode
    std::unique_ptr<PolledPort> polled_port; // set while open in polling mode
    ulong last_error = 0;
};
