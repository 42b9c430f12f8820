#include "terminal/mainwindow.h"

#include "linkcfg/qlinkcfgdlg.h"
#include "linkcfg/qserialcfgwidget.h"
#include "serialport/portdrain.h"
#include "ui_mainwindow.h"

#include <QEventLoop>
#include <memory>

namespace {

QString port_description(const QString& port_name, const PortSettings& settings)
{
    constexpr const char* PARITY_LETTERS[] = {"N", "O", "E", "M", "S"};
    constexpr const char* STOP_BITS_TEXTS[] = {"1", "1.5", "2"};
    const QString format = "%1,%2,%3,%4,%5";
    return format.arg(port_name, QString::number(settings.BaudRate),
                      QString::number(settings.DataBits),
                      PARITY_LETTERS[qBound(0, int(settings.Parity), 4)],
                      STOP_BITS_TEXTS[qBound(0, int(settings.StopBits), 2)]);
}

// An object that may be in the middle of a signal reads as gone at once and goes when the signal is
// over. As a child of the window it goes with it at the latest, should no event loop come any more.
template <typename Object> void retire(Object*& object, QObject* window)
{
    object->disconnect();
    object->setParent(window);
    object->deleteLater();
    object = nullptr;
}

} // namespace

void MainWindow::on_pushButton_open_clicked()
{
    if (!port || !port->isOpen())
        port_open();
    else
        port_close();
}

void MainWindow::port_open()
{
    auto dialog = std::make_unique<QLinkCfgDlg>(this, cfg_file);
    if (dialog->exec() != QDialog::Accepted)
        return;
    const QSerialCfgWidget* const page = dialog->serial_widget();
    if (!page->port_exists()) {
        msgbox(tr("No serial port exist in system"));
        return;
    }
    PortSettings settings;
    page->port_settings_get(&settings);
    const QString port_name = page->port_name();
    ++opens;
    if (PortDrain* const last = PortDrain::holding(port_name)) {
        dialog.reset(); // stores the settings before another open can store its own
        if (!port_awaited(last, port_name))
            return;
    }

    port = new QextSerialPort(port_name, settings, QextSerialPort::EventDriven);
    if (!port->open(QIODevice::ReadWrite)) {
        msgbox(tr("Open %1 failed").arg(port_name));
        delete port;
        port = nullptr;
        return;
    }
    connect(port, &QIODevice::readyRead, this, &MainWindow::port_read);
    enumerator = new QextSerialEnumerator(this);
    enumerator->setUpNotifications();
    connect(enumerator, &QextSerialEnumerator::deviceRemoved, this, &MainWindow::port_removed);
    dialog.reset(); // stores the settings
    session_begin(port_name, settings);
}

// The port may still let out what its last session accepted. The window goes on meanwhile, and may
// be asked to open another port, or to end: then false, and this open is given up.
bool MainWindow::port_awaited(PortDrain* last, const QString& port_name)
{
    const int this_open = opens;
    const QString note =
        tr("%1 opens as soon as the bytes of the last session are out").arg(port_name);
    ui->statusBar->showMessage(note);
    QEventLoop wait;
    connect(last, &PortDrain::ended, &wait, &QEventLoop::quit);
    wait.exec();
    if (ui->statusBar->currentMessage() == note)
        ui->statusBar->clearMessage();
    return this_open == opens && !PortDrain::holding(port_name);
}

void MainWindow::session_begin(const QString& port_name, const PortSettings& settings)
{
    recv_cut.forget();
    label_port->setText(port_description(port_name, settings));
    ui->checkBox_auto_send->setEnabled(true);
    ui->checkBox_send_in_turn->setEnabled(true);
    ui->checkBox_send_file->setEnabled(true);
    ui->pushButton_send->setEnabled(true);
    ui->checkBox_loop->setEnabled(true);
    ui->pushButton_open->setText(tr("&close"));
}

void MainWindow::port_close()
{
    if (send_timer->isActive())
        send_timer_stop();
    if (!port)
        return;
    file_send_end();
    port->close();
    retire(port, this);
    retire(enumerator, this);

    ui->checkBox_send_file->setChecked(false);
    ui->checkBox_send_file->setEnabled(false);
    ui->checkBox_send_in_turn->setChecked(false);
    ui->checkBox_send_in_turn->setEnabled(false);
    ui->checkBox_auto_send->setChecked(false);
    ui->checkBox_auto_send->setEnabled(false);
    ui->pushButton_send->setEnabled(false);
    ui->checkBox_loop->setEnabled(false);
    ui->pushButton_open->setText(tr("&open"));
}

void MainWindow::port_removed(QextPortInfo info)
{
    if (!port || !port->isOpen() || info.portName != port->portName())
        return;
    // A write to the port that goes may have failed first: that box is open, and one is enough. It
    // may be open inside a signal of the port, which has to live until the box is closed.
    if (session_failing)
        return;
    on_pushButton_open_clicked();
    information_box(tr("%1 removed").arg(info.portName));
}
