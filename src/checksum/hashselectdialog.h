// The modal calculator of check values and Base64 forms over the bytes about to be sent.
#pragma once

#include <QByteArray>
#include <QDialog>
#include <QString>
#include <cstdint>
#include <memory>

class Ui_HashSelectDialog;

// Works on a copy of the bytes taken at construction and keeps no settings. GUI thread only.
class HashSelectDialog : public QDialog
{
    Q_OBJECT

public:
    HashSelectDialog(const QByteArray& data, QWidget* parent);
    ~HashSelectDialog() override;

    // The line shown last; empty until a radio button is clicked.
    QString result_text() const;
    // Whether the user wants that line after the text in the send area.
    bool append_checked() const;

private slots:
    void on_radioButton_sum8_clicked();
    void on_radioButton_crc8_clicked();
    void on_radioButton_xor8_clicked();
    void on_radioButton_sum16_clicked();
    void on_radioButton_crc16_clicked();
    void on_radioButton_crc32_clicked();
    void on_radioButton_md5_clicked();
    void on_radioButton_base64_encode_clicked();
    void on_radioButton_base64_decode_ascii_clicked();
    void on_radioButton_base64_decode_hex_clicked();
    void on_radioButton_base64_decode_hex_with_space_clicked();

private:
    // Each byte as two digits, low byte first or, with MSB checked, high byte first; after them
    // the complement of each in the same order.
    void result8_show(std::uint8_t value);
    void result16_show(std::uint16_t value);
    void result32_show(std::uint32_t value);

    std::unique_ptr<Ui_HashSelectDialog> ui;
    QByteArray data;
};
