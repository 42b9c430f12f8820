#include "windowtest.h"

#include "linkcfg/qlinkcfgdlg.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QMessageBox>

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
        EXPECT_TRUE(box->textFormat() == Qt::PlainText || box->windowTitle() == "Tarnwick");
        if (const auto run = std::exchange(under_box, nullptr))
            run();
        box->accept();
        return;
    }
    if (dialog)
        if (const auto run = std::exchange(under_dialog, nullptr))
            run();
    if (auto* const chooser = qobject_cast<QFileDialog*>(dialog)) {
        chooser->findChild<QLineEdit*>("fileNameEdit")->setText(file);
        // Queued, as accepting may ask before it overwrites, and a timer doesn't fire inside its
        // own slot to answer that.
        QMetaObject::invokeMethod(chooser, file.isEmpty() ? "reject" : "accept",
                                  Qt::QueuedConnection);
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
    QSettings(INI, QSettings::IniFormat).setValue(key, value);
}

QString WindowTest::stored(const QString& key, const QString& path) const
{
    return QSettings(path, QSettings::IniFormat).value(key).toString();
}

void WindowTest::window_start()
{
    window_end();
    window = std::make_unique<MainWindow>(nullptr, clock);
    window->show();
}

bool WindowTest::port_open()
{
    answers.port = port_name;
    click(OPEN);
    return !closed();
}

QStringList WindowTest::disabled() const
{
    QStringList names;
    for (const char* const name :
         {AUTO_SEND, IN_TURN, SEND_FILE, LOOP, SEND, HEX_MODE, RAW_TEXT, "pushButton_crc_hash",
          "plainTextEdit_send", "tableWidget_strings"})
        if (!enabled(name))
            names += name;
    return names;
}

void WindowTest::command(const char* action, const QString& file)
{
    answers.file = file;
    find<QAction>(action)->trigger();
}

void WindowTest::send(const QString& text)
{
    type(text);
    click(SEND);
}

void WindowTest::set_row(int row, bool marked, bool hex, const QString& text)
{
    alias(row)->setCheckState(marked ? Qt::Checked : Qt::Unchecked);
    value(row)->setCheckState(hex ? Qt::Checked : Qt::Unchecked);
    value(row)->setText(text);
}

QByteArray WindowTest::file_choose(int size)
{
    answers.file = sandbox.path("file");
    file_write(answers.file, mixed_bytes(size));
    return mixed_bytes(size);
}

bool WindowTest::receive(const QByteArray& data, int total)
{
    return pty.write(data) &&
           wait_until([&] { return counters().endsWith(QString("RX: %1").arg(total)); });
}

QStringList WindowTest::status() const
{
    QStringList texts;
    for (const QObject* child : find<QWidget>("statusBar")->children())
        if (const auto* const label = qobject_cast<const QLabel*>(child))
            texts += label->text();
    return texts;
}
