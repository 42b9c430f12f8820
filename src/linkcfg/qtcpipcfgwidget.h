// The page of the link dialog for a network link: address, ports and time-out.
#pragma once

#include "links/tcpip_cfg.h"

#include <QString>
#include <QWidget>
#include <memory>
#include <vector>

class Option;

namespace Ui {
class QTcpipCfgWidget;
}

// The page stores each setting that has changed when it is destroyed.
class QTcpipCfgWidget : public QWidget
{
    Q_OBJECT

public:
    // Shows what the INI file filename holds.
    QTcpipCfgWidget(QWidget* parent, const QString& filename);
    ~QTcpipCfgWidget() override;

    int ip_version() const; // a TcpipVersion; -1 when the file named none
    int protocol() const;   // a TcpipProtocol; -1 when the file named none
    QString ipv4_addr() const;
    QString ipv6_addr() const;
    int remote_port() const;
    int local_port() const;
    bool local_port_random() const;
    int timeout() const; // ms

    // The address is that of the IP version chosen, as Latin-1, cut to 63 bytes.
    void settings_get(tcpip_cfg* cfg) const;
    // Shows protocol, address if there is one, remote port and time-out as if somebody had typed
    // them. An address with a colon is one of IPv6.
    void settings_show(const tcpip_cfg& cfg);

private slots:
    void on_comboBox_ip_version_currentIndexChanged(int index);
    void on_checkBox_random_local_port_stateChanged(int arg1);

private:
    std::vector<Option> options() const;

    std::unique_ptr<Ui::QTcpipCfgWidget> ui;
    QString filename;
};
