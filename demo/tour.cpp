// A tour of the window that nobody has to click through: opens a port with an echoing device behind
// it, sends a text and a hexadecimal line, prints what the receive area shows and takes pictures.
//
//   tarnwick-tour PORT LANGUAGE FOLDER     e.g. /run/user/1000/tarnwick/ports/echo en_US /tmp/shots
//
// Exit codes: 0 all was echoed, 1 something wasn't, 2 wrong arguments.
#include "checksum/hashselectdialog.h"
#include "linkcfg/qlinkcfgdlg.h"
#include "terminal/mainwindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>

namespace {

constexpr int PATIENCE_MS = 10000;
constexpr int PAUSE_MS = 20; // longer than the frame interval, so that each answer is a frame

class Tour
{
public:
    Tour(QString port_name, QString shots_folder)
        : port_name(std::move(port_name))
        , shots(std::move(shots_folder))
    {
        window.show();
        QTest::qWait(PAUSE_MS);
        window.resize(900, 520);
    }

    bool run()
    {
        if (!open_port())
            return false;
        for (const char* const box :
             {"checkBox_frame_mode", "checkBox_display_time", "checkBox_display_tx"})
            check(box);
        check("checkBox_raw_text");
        bool echoed = send("AT+VERSION?", "AT+VERSION?");
        echoed = send("hello, radio", "hello, radio") && echoed;
        check("checkBox_hex_mode");
        check("checkBox_hex_display");
        echoed = send("01 03 00 00 00 02 C4 0B", "01 03 00 00 00 02 C4 0B ") && echoed;
        shoot(window, "session");
        std::printf("%s\n", qPrintable(shown()));
        shoot_list();
        shoot_hash();
        return echoed;
    }

private:
    template <typename Widget> Widget* find(const char* name) const
    {
        return window.findChild<Widget*>(name);
    }
    QString shown() const { return find<QPlainTextEdit>("plainTextEdit_recv")->toPlainText(); }
    void check(const char* name) const { find<QCheckBox>(name)->setChecked(true); }
    void click(const char* name) const
    {
        QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton);
    }
    void shoot(QWidget& widget, const QString& name) const
    {
        QTest::qWait(PAUSE_MS * 5);
        widget.grab().save(QDir(shots).filePath(name + ".png"));
    }

    // Runs `act` on the modal dialog of this type that `open` brings up, and accepts it.
    template <typename Dialog, typename Open, typename Act> void through_dialog(Open open, Act act)
    {
        QTimer::singleShot(PAUSE_MS * 10, &window, [act] {
            if (auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget())) {
                act(*dialog);
                dialog->accept();
            }
        });
        open();
    }

    bool open_port()
    {
        const auto choose = [this](QLinkCfgDlg& dialog) {
            auto* const type = dialog.findChild<QComboBox*>("link_type_box");
            QTest::keyClick(type, Qt::Key_Down);
            shoot(dialog, "link-tcpip");
            QTest::keyClick(type, Qt::Key_Up);
            auto* const ports = dialog.findChild<QComboBox*>("portComboBox");
            ports->setCurrentIndex(ports->findText(port_name));
            shoot(dialog, "link-serial");
        };
        through_dialog<QLinkCfgDlg>([this] { click("pushButton_open"); }, choose);
        return find<QPushButton>("pushButton_send")->isEnabled();
    }

    bool send(const QString& text, const QString& answer)
    {
        auto* const area = find<QPlainTextEdit>("plainTextEdit_send");
        area->setFocus();
        area->selectAll();
        QTest::keyClicks(area, text);
        const int before = shown().size();
        click("pushButton_send");
        QElapsedTimer clock;
        clock.start();
        while (!shown().mid(before).section('\n', 1).contains(answer))
            if (clock.elapsed() > PATIENCE_MS)
                return false;
            else
                QTest::qWait(PAUSE_MS);
        QTest::qWait(PAUSE_MS);
        return true;
    }

    void shoot_list()
    {
        static const char* const ROWS[][2] = {{"version", "AT+VERSION?\\r\\n"},
                                              {"reboot", "AT+REBOOT\\r\\n"},
                                              {"read registers", "01 03 00 00 00 02 C4 0B"}};
        click("pushButton_extend");
        auto* const table = find<QTableWidget>("tableWidget_strings");
        for (int row = 0; row < 3; ++row) {
            table->item(row, 1)->setText(ROWS[row][0]);
            table->item(row, 1)->setCheckState(Qt::Checked);
            table->item(row, 2)->setText(ROWS[row][1]);
        }
        table->item(2, 2)->setCheckState(Qt::Checked);
        window.resize(1200, 520);
        shoot(window, "list");
    }

    void shoot_hash()
    {
        through_dialog<HashSelectDialog>([&] { click("pushButton_crc_hash"); },
                                         [&](HashSelectDialog& dialog) { shoot(dialog, "hash"); });
    }

    MainWindow window;
    QString port_name;
    QString shots;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: tarnwick-tour PORT LANGUAGE FOLDER\n");
        return 2;
    }
    const QTemporaryDir settings_folder;
    const QString shots = QDir(argv[3]).absolutePath();
    QDir().mkpath(shots);
    QDir::setCurrent(settings_folder.path());
    QSettings("tarnwick.ini", QSettings::IniFormat).setValue("global/language", QString(argv[2]));
    return Tour(argv[1], shots).run() ? 0 : 1;
}
