// The page of the link dialog for a serial port: which one, and how it is to be set up.
#pragma once

#include "serialport/qextserialport.h"

#include <QString>
#include <QWidget>

class QComboBox;
class QSpinBox;

// What the page shows, as it is kept in the file: the row of each combo box, -1 for none.
struct SerialCfgIndexes
{
    int port = 0;
    int baud = 0;
    int data_bits = 0;
    int parity = 0;
    int stop_bits = 0;
    int flow = 0;
    int timeout = 0; // ms
};

// The page stores its settings when it is destroyed, all of them or, when nothing has changed,
// none. The rows of the combo boxes are what the file keeps; their item data is what goes to the
// port. The last row of the baud rates takes any rate: while it is current its number can be
// edited.
class QSerialCfgWidget : public QWidget
{
    Q_OBJECT

public:
    // Shows what the INI file cfg_file holds; with an empty name nothing is stored at the end.
    QSerialCfgWidget(QWidget* parent, const QString& cfg_file);
    ~QSerialCfgWidget() override;

    bool port_exists() const;
    QString port_name() const; // empty without a port
    int port_index() const;    // -1 without a port

    int baud_rate() const;    // bits/s
    int data_bits() const;    // a DataBitsType
    int parity() const;       // a ParityType
    int stop_bits() const;    // a StopBitsType
    int flow_control() const; // a FlowType
    int timeout() const;      // ms
    void port_settings_get(PortSettings* settings) const;
    void indexes_get(SerialCfgIndexes* indexes) const;

    int custom_baud_index() const;
    bool is_custom_baud_index(int index) const;
    int custom_baud() const; // bits/s
    void custom_baud_set(int rate);

    // Shows these as if somebody had chosen them. No port, if there is none with this name and none
    // that it is a link to.
    void settings_show(const QString& port, const PortSettings& settings);

private slots:
    void baudComboBoxIndexChanged(int index);
    void baudComboBoxTextChanged(QString s);

private:
    void port_build();
    void baud_build(int custom_rate);
    void timeout_build();
    QComboBox* combo_create(const char* name);
    void layout_build();
    void settings_store() const;

    SerialCfgIndexes initial; // as read from the file
    QComboBox* portComboBox = nullptr;
    QComboBox* baudComboBox = nullptr;
    QComboBox* dataBitsComboBox = nullptr;
    QComboBox* parityComboBox = nullptr;
    QComboBox* stopBitsComboBox = nullptr;
    QComboBox* flowComboBox = nullptr;
    QSpinBox* timeoutSpinBox = nullptr;
    QString cfg_file;
};
