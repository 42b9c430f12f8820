// The calculator as a user sees it: a shown dialog, clicked with the mouse.
#include "hashselectdialog.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>
#include <array>
#include <gmock/gmock.h>

namespace {

class Calculator
{
public:
    explicit Calculator(const QByteArray& bytes)
        : dialog(bytes, nullptr)
    {
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    }

    QAbstractButton* button(const QString& name)
    {
        return dialog.findChild<QAbstractButton*>(name);
    }

    void click(const QString& name)
    {
        // On the mark itself: a wide cell is not part of a short text's button.
        QTest::mouseClick(button(name), Qt::LeftButton, {}, {8, button(name)->height() / 2});
    }

    void click(QDialogButtonBox::StandardButton which)
    {
        QTest::mouseClick(dialog.findChild<QDialogButtonBox*>("buttonBox")->button(which),
                          Qt::LeftButton);
    }

    std::string choose(const QString& name)
    {
        click("radioButton_" + name);
        EXPECT_TRUE(button("radioButton_" + name)->isChecked());
        return dialog.result_text().toStdString();
    }

    HashSelectDialog dialog;
};

struct Lines
{
    QByteArray bytes;
    const char* choice;
    const char* lsb_first;
    const char* msb_first = nullptr; // the same when null
};

TEST(HashSelectDialog, ShowsEachValueInEitherOrder)
{
    const QByteArray digits = "123456789";
    const QByteArray nul_inside = QByteArray("a\0b\xFF", 4).toBase64();
    const std::string long_line = std::string(40000, 'A');
    const Lines rows[] = {
        {digits, "sum8", "dd (Bit wise NOT: 22)"},
        {digits, "crc8", "a1 (Bit wise NOT: 5e)"},
        {digits, "xor8", "31 (Bit wise NOT: ce)"},
        {digits, "sum16", "dd 01 (Bit wise NOT: 22 fe)", "01 dd (Bit wise NOT: fe 22)"},
        {digits, "crc16", "37 4b (Bit wise NOT: c8 b4)", "4b 37 (Bit wise NOT: b4 c8)"},
        {digits, "crc32", "d9 c6 0b 34 (Bit wise NOT: 26 39 f4 cb)",
         "34 0b c6 d9 (Bit wise NOT: cb f4 39 26)"},
        {digits, "md5", "25 F9 E7 94 32 3B 45 38 85 F5 18 1F 1B 62 4D 0B"},
        {digits, "base64_encode", "MTIzNDU2Nzg5"},
        {"", "sum8", "00 (Bit wise NOT: ff)"},
        {"", "crc8", "00 (Bit wise NOT: ff)"},
        {"", "xor8", "00 (Bit wise NOT: ff)"},
        {"", "sum16", "00 00 (Bit wise NOT: ff ff)"},
        {"", "crc16", "ff ff (Bit wise NOT: 00 00)"},
        {"", "crc32", "ff ff ff ff (Bit wise NOT: 00 00 00 00)"},
        {"", "md5", "D4 1D 8C D9 8F 00 B2 04 E9 80 09 98 EC F8 42 7E"},
        {"", "base64_encode", ""},
        {"", "base64_decode_ascii", ""},
        {"", "base64_decode_hex", ""},
        {"", "base64_decode_hex_with_space", ""},
        {"\xFF", "sum8", "ff (Bit wise NOT: 00)"},
        {"\xFF", "sum16", "ff ff (Bit wise NOT: 00 00)"},
        {"\xFF\xE7", "crc16", "00 0a (Bit wise NOT: ff f5)", "0a 00 (Bit wise NOT: f5 ff)"},
        {QByteArray("\0\xFA\n", 3), "base64_encode", "APoK"},
        {nul_inside, "base64_decode_ascii", "a"},
        {nul_inside, "base64_decode_hex", "610062ff"},
        {nul_inside, "base64_decode_hex_with_space", "61 00 62 FF"},
        {QByteArray("gr\xC3\xBC\xC3\x9F").toBase64(), "base64_decode_ascii", "gr\xC3\xBC\xC3\x9F"},
        {"Y* W\nI=", "base64_decode_ascii", "ab"}, // what is not of the alphabet is skipped
        {QByteArray(30000, '\0'), "base64_encode", long_line.c_str()},
    };
    for (const Lines& row : rows) {
        SCOPED_TRACE(std::string(row.choice) + " of " + row.bytes.left(40).toHex().toStdString());
        Calculator calculator(row.bytes);
        EXPECT_EQ(calculator.choose(row.choice), row.lsb_first);
        calculator.click("checkBox_msb");
        EXPECT_EQ(calculator.dialog.result_text().toStdString(), row.lsb_first);
        const char* msb_first = row.msb_first != nullptr ? row.msb_first : row.lsb_first;
        EXPECT_EQ(calculator.choose(row.choice), msb_first) << "again, though it is on already";
    }
}

TEST(HashSelectDialog, WorksOnItsOwnCopyWithOneChoiceAtATime)
{
    QByteArray bytes = "1";
    Calculator calculator(bytes);
    bytes[0] = '2';
    EXPECT_EQ(calculator.dialog.result_text(), "");
    EXPECT_EQ(calculator.choose("xor8"), "31 (Bit wise NOT: ce)");
    calculator.click("radioButton_sha1");
    EXPECT_TRUE(calculator.button("radioButton_xor8")->isChecked());
    EXPECT_EQ(calculator.dialog.result_text(), "31 (Bit wise NOT: ce)");
    EXPECT_EQ(calculator.choose("base64_encode"), "MQ==");
    EXPECT_FALSE(calculator.button("radioButton_xor8")->isChecked());
}

TEST(HashSelectDialog, EndsWithWhatTheUserPressed)
{
    Calculator accepted("1");
    EXPECT_FALSE(accepted.dialog.append_checked());
    accepted.click("checkBox");
    accepted.click(QDialogButtonBox::Ok);
    EXPECT_EQ(accepted.dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(accepted.dialog.append_checked());

    Calculator rejected("1");
    rejected.dialog.setResult(QDialog::Accepted);
    rejected.click(QDialogButtonBox::Cancel);
    EXPECT_EQ(rejected.dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(rejected.dialog.isVisible());
}

} // namespace
