// What an event-driven port leaves at its close: accepted bytes that are still on their way out.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QSerialPort>
#include <QString>
#include <QTimer>
#include <memory>

// Holds the device, with the settings of its session, until the bytes are out, the time-out of the
// session has run out or the device has gone. Closes it then, and goes with the event loop. What
// comes in meanwhile is dropped. Lives on the thread of its port; the functions here know only what
// drains on the thread that calls them.
class PortDrain : public QObject
{
    Q_OBJECT

public:
    // Takes over a port, which may be inside one of its signals, and never waits: what the system
    // takes goes out at once, the rest in the event loop, for at most timeout_ms from now. Then the
    // rest is discarded.
    static void begin(std::unique_ptr<QSerialPort> serial, const QString& port_name,
                      long timeout_ms);
    // The one that holds the device that port_name leads to, or null. Not owned by the caller.
    static PortDrain* holding(const QString& port_name);
    // Waits, without an event loop, until all have ended. Called at the end of the application and
    // of a QThread too.
    static void finish_all();

    ~PortDrain() override;

    // Waits, without an event loop, until this one has ended.
    void finish();

signals:
    // The device is free.
    void ended();

private:
    PortDrain(std::unique_ptr<QSerialPort> serial, const QString& port_name, long timeout_ms);

    void push_what_goes();
    void advance();
    void check();
    void handle_error(QSerialPort::SerialPortError error);
    void end();

    const std::unique_ptr<QSerialPort> serial;
    const QString device;
    const long timeout_ms;
    QElapsedTimer clock;
    QTimer timer;
    bool over = false;
};
