#include "serialport/portdrain.h"

#include "serialport/tty.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>
#include <QVector>
#include <algorithm>
#include <utility>

namespace {
// Where other work goes on meanwhile the system is asked less often whether its queue is empty.
constexpr int CHECK_MS = 10;
// A fast reader could go on taking; longer than this no close keeps its caller, in ms.
constexpr int AT_ONCE_MS = 10;

// Bytes that may come in between two checks, which drop them.
constexpr int INPUT_LIMIT = 64 * 1024;

thread_local QVector<PortDrain*> drains;

// Links lead to devices, and one device may have several.
QString device_of(const QString& port_name)
{
    const QString path = QFileInfo(tty_device_path(port_name)).canonicalFilePath();
    return path.isEmpty() ? port_name : path;
}
} // namespace

void PortDrain::begin(std::unique_ptr<QSerialPort> serial, const QString& port_name,
                      long timeout_ms)
{
    auto* const drain = new PortDrain(std::move(serial), port_name, timeout_ms);
    if (drain->serial->isOpen()) {
        drain->push_what_goes();
        drain->check();
    } else {
        drain->end(); // the device went away before
    }
}

PortDrain* PortDrain::holding(const QString& port_name)
{
    const QString device = device_of(port_name);
    for (PortDrain* const drain : std::as_const(drains))
        if (!drain->over && drain->device == device)
            return drain;
    return nullptr;
}

void PortDrain::finish_all()
{
    const auto open = [](const PortDrain* drain) { return !drain->over; };
    // All of them in turn, as each has a time-out of its own that runs.
    while (std::any_of(drains.cbegin(), drains.cend(), open))
        for (PortDrain* const drain : std::as_const(drains))
            drain->advance();
    const auto all = drains;
    qDeleteAll(all); // there may be no event loop any more to do it
}

PortDrain::PortDrain(std::unique_ptr<QSerialPort> port, const QString& port_name, long timeout_ms)
    : serial(std::move(port))
    , device(device_of(port_name))
    , timeout_ms(timeout_ms)
{
    static const bool once = (qAddPostRoutine(&PortDrain::finish_all), true);
    Q_UNUSED(once)
    connect(QThread::currentThread(), &QThread::finished, this, &PortDrain::finish,
            Qt::DirectConnection);
    connect(serial.get(), &QSerialPort::errorOccurred, this, &PortDrain::handle_error);
    connect(&timer, &QTimer::timeout, this, &PortDrain::check);
    // A wait for room to write reads on while there is input and room for it.
    serial->setReadBufferSize(INPUT_LIMIT);
    drains += this;
    clock.start();
    timer.start(CHECK_MS);
}

PortDrain::~PortDrain()
{
    drains.removeOne(this);
}

void PortDrain::push_what_goes()
{
    while (serial->bytesToWrite() > 0 && clock.elapsed() < AT_ONCE_MS &&
           serial->waitForBytesWritten(0))
        ;
}

void PortDrain::finish()
{
    while (!over)
        advance();
}

void PortDrain::advance()
{
    if (over)
        return;
    if (serial->bytesToWrite() > 0)
        serial->waitForBytesWritten(OUTPUT_QUEUE_POLL_MS);
    else
        QThread::msleep(OUTPUT_QUEUE_POLL_MS);
    check();
}

void PortDrain::check()
{
    if (over)
        return;
    if (serial->bytesAvailable() > 0)
        serial->readAll();
    const bool sent = serial->bytesToWrite() == 0 && tty_output_queue(*serial) == 0;
    if (sent || clock.elapsed() >= timeout_ms)
        end();
}

void PortDrain::handle_error(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::WriteError || tty_lost(*serial, error))
        end();
}

void PortDrain::end()
{
    over = true;
    timer.stop();
    serial->disconnect(this);
    tty_discard_output(*serial);
    if (serial->isOpen())
        serial->close();
    deleteLater();
    emit ended();
}
