// The I/O thread's side of a polled port where ports are no file descriptors.
#pragma once

#include "serialport/linestatus.h"
#include "serialport/portsettings.h"
#include "serialport/tty.h"

#include <QByteArray>
#include <QEventLoop>
#include <QObject>
#include <QSerialPort>
#include <condition_variable>
#include <functional>
#include <mutex>

class SerialPump;

// What the driving thread and the I/O thread share; every field is guarded by `mutex`.
struct PolledState
{
    std::mutex mutex;
    std::condition_variable changed;
    QByteArray received;
    QByteArray outgoing;        // what the I/O thread has not yet taken
    qint64 in_flight = 0;       // bytes taken by the I/O thread and not yet written
    SerialPump* pump = nullptr; // set while the I/O thread serves the port
    bool settled = false;       // the open has succeeded or failed
    bool closing = false;
    bool withdraw = false; // the driver gave up on what has not been written
    bool discard = false;  // the driver wants nothing of what has arrived
    bool lost = false;
    PortFailure failure;
};

// Lives on the I/O thread and moves bytes between the QSerialPort and the shared state.
class SerialPump : public QObject
{
    Q_OBJECT

public:
    SerialPump(const QString& name, const PortSettings& settings, PolledState& state);

    bool open(QIODevice::OpenMode mode, const LinesAtOpen& lines);
    // Serves the port until the driver asks for the close.
    void run();
    // Takes what the driver has left in the state: bytes to write, a withdrawal, room for more
    // input.
    Q_INVOKABLE void turn();
    // Keeps why the operation failed; whether it didn't.
    bool call(const std::function<PortFailure(QSerialPort&)>& operation);

private:
    void withdraw_output();
    void discard_input();
    void drain_and_close();
    void fetch();
    void append_received(const QByteArray& data);
    void count_written(qint64 bytes);
    void handle_error(QSerialPort::SerialPortError error);
    void fail(const PortFailure& failure);

    const QString name;
    const PortSettings settings;
    PolledState& state;
    TtyDescriptor lock;
    QSerialPort serial;
    QEventLoop loop;
};
