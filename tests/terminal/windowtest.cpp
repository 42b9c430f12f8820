#include "windowtest.h"

#include "linkcfg/qlinkcfgdlg.h"
#include "terminal/stringcolumns.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QSettings>

Answers::Answers()
{
    connect(&timer, &QTimer::timeout, this, &Answers::answer);
    timer.start(1);
}

void Answers::answer()
{
    QWidget* const dialog = QApplication::activeModalWidget();
    if (auto* const box = qobject_cast<QMessageBox*>(dialog)) {
        if (QAbstractButton* const overwrite = box->button(QMessageBox::Yes)) {
            overwrite->click();
            return;
        }
        boxes += box->windowTitle() + "|" + box->text();
        // Names of files and ports are no markup.
        if (box->windowTitle() != "Tarnwick") {
            EXPECT_EQ(box->textFormat(), Qt::PlainText) << qPrintable(box->text());
        }
        if (const auto run = std::exchange(under_box, nullptr))
            run();
        box->accept();
        return;
    }
    if (dialog)
        if (const auto run = std::exchange(under_dialog, nullptr))
            run();
    if (auto* const chooser = qobject_cast<QFileDialog*>(dialog)) {
        if (file.isEmpty()) {
            chooser->reject();
            return;
        }
        chooser->findChild<QLineEdit*>("fileNameEdit")->setText(file);
        // Queued, as accepting may ask before it overwrites, and a timer doesn't fire inside its
        // own slot to answer that.
        QMetaObject::invokeMethod(chooser, "accept", Qt::QueuedConnection);
    } else if (auto* const link = qobject_cast<QLinkCfgDlg*>(dialog)) {
        auto* const ports = link->findChild<QComboBox*>("portComboBox");
        ports->setCurrentIndex(ports->findText(port));
        link->done(port.isEmpty() ? QDialog::Rejected : QDialog::Accepted);
    }
}

WindowTest::WindowTest()
    : port_name(pty.link_into(sandbox.ports_folder(), "port"))
{
    configure("global/language", "en_US");
}

void WindowTest::configure(const QString& key, const QVariant& value)
{
    QSettings("tarnwick.ini", QSettings::IniFormat).setValue(key, value);
}

void WindowTest::window_start()
{
    window = std::make_unique<MainWindow>(nullptr, clock);
    window->show();
}

bool WindowTest::port_open()
{
    answers.port = port_name;
    click("pushButton_open");
    return !closed();
}

void WindowTest::set_row(int row, bool marked, bool hex, const QString& text)
{
    table()->item(row, ALIAS_COLUMN)->setCheckState(marked ? Qt::Checked : Qt::Unchecked);
    table()->item(row, VALUE_COLUMN)->setCheckState(hex ? Qt::Checked : Qt::Unchecked);
    table()->item(row, VALUE_COLUMN)->setText(text);
}

bool WindowTest::receive(const QByteArray& data, int total)
{
    return pty.write(data) &&
           wait_until([&] { return status().last() == QString("RX: %1").arg(total); });
}

QStringList WindowTest::status() const
{
    QStringList texts;
    for (const QObject* child : find<QWidget>("statusBar")->children())
        if (const auto* const label = qobject_cast<const QLabel*>(child))
            texts += label->text();
    return texts;
}
