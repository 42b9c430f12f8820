#include "windowtest.h"

#include "qlinkcfgdlg.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
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
        if (box->windowTitle() != "Tarnwick")
            EXPECT_EQ(box->textFormat(), Qt::PlainText) << qPrintable(box->text());
        const auto run = std::exchange(under_box, nullptr);
        if (run)
            run();
        box->accept();
    } else if (auto* const chooser = qobject_cast<QFileDialog*>(dialog)) {
        file_caption = chooser->windowTitle();
        if (const auto run = std::exchange(under_dialog, nullptr))
            run();
        if (file.isEmpty()) {
            chooser->reject();
            return;
        }
        chooser->findChild<QLineEdit*>("fileNameEdit")->setText(file);
        // Queued, as accepting may ask before it overwrites, and a timer doesn't fire inside its
        // own slot to answer that.
        QMetaObject::invokeMethod(chooser, "accept", Qt::QueuedConnection);
    } else if (auto* const link = qobject_cast<QLinkCfgDlg*>(dialog)) {
        if (!link_dialog || link_dialog(*link))
            link->accept();
        else
            link->reject();
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
    window = std::make_unique<MainWindow>();
    window->show();
}

bool WindowTest::port_open()
{
    answers.link_dialog = [this](QLinkCfgDlg& dialog) {
        auto* const ports = dialog.findChild<QComboBox*>("portComboBox");
        ports->setCurrentIndex(ports->findText(port_name));
        return true;
    };
    click("pushButton_open");
    answers.link_dialog = nullptr;
    return find<QPushButton>("pushButton_open")->text() == "&close";
}

bool WindowTest::status_shows(const QString& text) const
{
    for (const QLabel* label : find<QWidget>("statusBar")->findChildren<QLabel*>())
        if (label->text() == text)
            return true;
    return false;
}

bool WindowTest::receive(const QByteArray& data, int total)
{
    return pty.write(data) &&
           wait_until([&] { return status_shows(QString("RX: %1").arg(total)); });
}
