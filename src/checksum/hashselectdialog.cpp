#include "checksum/hashselectdialog.h"

#include "checksum/crc.h"
#include "checksum/hextext.h"
#include "checksum/md5.h"
#include "checksum/sums.h"
#include "ui_hashselectdialog.h"

#include <utility>

namespace {

QString two_digits(std::uint32_t value)
{
    return QString("%1").arg(value & 0xFF, 2, 16, QLatin1Char('0'));
}

unsigned size_of(const QByteArray& bytes)
{
    return static_cast<unsigned>(bytes.size());
}

} // namespace

HashSelectDialog::HashSelectDialog(const QByteArray& data, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui_HashSelectDialog>())
    , data(data)
{
    ui->setupUi(this);
    ui->lineEdit->setAccessibleName(tr("result"));
}

HashSelectDialog::~HashSelectDialog() = default;

QString HashSelectDialog::result_text() const
{
    return ui->lineEdit->text();
}

bool HashSelectDialog::append_checked() const
{
    return ui->checkBox->isChecked();
}

void HashSelectDialog::on_radioButton_sum8_clicked()
{
    result8_show(sum8(data.constData(), size_of(data)));
}

void HashSelectDialog::on_radioButton_crc8_clicked()
{
    result8_show(crc8(data.constData(), size_of(data)));
}

void HashSelectDialog::on_radioButton_xor8_clicked()
{
    result8_show(xor8(data.constData(), size_of(data)));
}

void HashSelectDialog::on_radioButton_sum16_clicked()
{
    result16_show(sum16(data.constData(), size_of(data)));
}

void HashSelectDialog::on_radioButton_crc16_clicked()
{
    result16_show(crc16(data.constData(), static_cast<int>(data.size())));
}

void HashSelectDialog::on_radioButton_crc32_clicked()
{
    result32_show(crc32(data.constData(), size_of(data), CRC32_START));
}

void HashSelectDialog::on_radioButton_md5_clicked()
{
    Md5Context context;
    std::uint8_t digest[sizeof context.digest];
    md5_init(&context);
    md5_update(&context, data.constData(), size_of(data));
    md5_final(digest, &context);
    ui->lineEdit->setText(hex_text(digest, sizeof digest));
}

void HashSelectDialog::on_radioButton_base64_encode_clicked()
{
    ui->lineEdit->setText(QString::fromLatin1(data.toBase64()));
}

void HashSelectDialog::on_radioButton_base64_decode_ascii_clicked()
{
    const QByteArray decoded = QByteArray::fromBase64(data);
    // As a C string, so that the text ends at the first NUL with every version of Qt.
    ui->lineEdit->setText(QString::fromUtf8(decoded.constData()));
}

void HashSelectDialog::on_radioButton_base64_decode_hex_clicked()
{
    ui->lineEdit->setText(QString::fromLatin1(QByteArray::fromBase64(data).toHex()));
}

void HashSelectDialog::on_radioButton_base64_decode_hex_with_space_clicked()
{
    const QByteArray decoded = QByteArray::fromBase64(data);
    ui->lineEdit->setText(hex_text(decoded.constData(), static_cast<int>(decoded.size())));
}

void HashSelectDialog::result8_show(std::uint8_t value)
{
    ui->lineEdit->setText(
        tr("%1 (Bit wise NOT: %2)").arg(two_digits(value), two_digits(~std::uint32_t(value))));
}

void HashSelectDialog::result16_show(std::uint16_t value)
{
    std::uint32_t b0 = value;
    std::uint32_t b1 = value >> 8;
    if (ui->checkBox_msb->isChecked())
        std::swap(b0, b1);
    ui->lineEdit->setText(
        tr("%1 %2 (Bit wise NOT: %3 %4)")
            .arg(two_digits(b0), two_digits(b1), two_digits(~b0), two_digits(~b1)));
}

void HashSelectDialog::result32_show(std::uint32_t value)
{
    std::uint32_t b0 = value;
    std::uint32_t b1 = value >> 8;
    std::uint32_t b2 = value >> 16;
    std::uint32_t b3 = value >> 24;
    if (ui->checkBox_msb->isChecked()) {
        std::swap(b0, b3);
        std::swap(b1, b2);
    }
    ui->lineEdit->setText(tr("%1 %2 %3 %4 (Bit wise NOT: %5 %6 %7 %8)")
                              .arg(two_digits(b0), two_digits(b1), two_digits(b2), two_digits(b3),
                                   two_digits(~b0), two_digits(~b1), two_digits(~b2),
                                   two_digits(~b3)));
}
