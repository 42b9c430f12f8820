// The modal dialog that asks for the settings of a link: its type, and a page for each type.
#pragma once

#include <QDialog>
#include <QString>

class QComboBox;
class QDialogButtonBox;
class QSerialCfgWidget;
class QStackedWidget;
class QTcpipCfgWidget;

// Settings are stored when the dialog is destroyed, whether it was accepted or not, so that what
// was set before a Cancel is there the next time. The pages stay valid until then.
class QLinkCfgDlg : public QDialog
{
    Q_OBJECT

public:
    // Shows what the INI file cfg_file holds.
    QLinkCfgDlg(QWidget* parent, const QString& cfg_file);
    ~QLinkCfgDlg() override;

    // The type on show: 0 serial, 1 TCP/IP, 2 CAN, 3 USB; -1 when the file named none of these.
    int link_type() const;
    void link_type_set(int type);
    QSerialCfgWidget* serial_widget() const { return serial_page; }
    QTcpipCfgWidget* tcpip_widget() const { return tcpip_page; }

private:
    QStackedWidget* page_stack_create(int link_type);
    QComboBox* link_type_box_create(int link_type);
    QDialogButtonBox* button_box_create();
    void layout_build();
    void link_type_store() const;

    QSerialCfgWidget* serial_page = nullptr;
    QTcpipCfgWidget* tcpip_page = nullptr;
    QStackedWidget* page_stack = nullptr;
    QDialogButtonBox* button_box = nullptr;
    QComboBox* link_type_box = nullptr;
    QString cfg_file;
};
