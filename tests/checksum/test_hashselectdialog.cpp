// The calculator as a user sees it: a shown dialog, clicked with the mouse.
#include "checksum/hashselectdialog.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

struct Calculator
{
    explicit Calculator(const QByteArray& bytes)
        : dialog(bytes, nullptr)
    {
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    }

    // Clicks on the mark itself: a wide cell is not part of a short text's button.
    std::string click(const QString& name)
    {
        auto* const button = dialog.findChild<QAbstractButton*>(name);
        QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
        return dialog.result_text().toStdString();
    }

    void end(QDialogButtonBox::StandardButton which)
    {
        auto* const box = dialog.findChild<QDialogButtonBox*>("buttonBox");
        QTest::mouseClick(box->button(which), Qt::LeftButton);
    }

    HashSelectDialog dialog;
};

TEST(HashSelectDialog, ShowsEachValueInEitherOrder)
{
    const QByteArray digits = "123456789";
    const QByteArray nul_inside = QByteArray("a\0b\xFF", 4).toBase64();
    const struct
    {
        QByteArray bytes;
        const char* choice;
        std::string lsb_first;
        std::string msb_first = {}; // the same when empty
    } rows[] = {
        {digits, "sum8", "dd (Bit wise NOT: 22)"},
        {digits, "crc8", "a1 (Bit wise NOT: 5e)"},
        {digits, "xor8", "31 (Bit wise NOT: ce)"},
        {digits, "sum16", "dd 01 (Bit wise NOT: 22 fe)", "01 dd (Bit wise NOT: fe 22)"},
        {digits, "crc16", "37 4b (Bit wise NOT: c8 b4)", "4b 37 (Bit wise NOT: b4 c8)"},
        {digits, "crc32", "d9 c6 0b 34 (Bit wise NOT: 26 39 f4 cb)",
         "34 0b c6 d9 (Bit wise NOT: cb f4 39 26)"},
        {digits, "md5", "25 F9 E7 94 32 3B 45 38 85 F5 18 1F 1B 62 4D 0B"},
        {"", "crc32", "ff ff ff ff (Bit wise NOT: 00 00 00 00)"},
        {"\xFF\xE7", "crc16", "00 0a (Bit wise NOT: ff f5)", "0a 00 (Bit wise NOT: f5 ff)"},
        {QByteArray("\0\xFA\n", 3), "base64_encode", "APoK"},
        {QByteArray(30000, '\0'), "base64_encode", std::string(40000, 'A')},
        {nul_inside, "base64_decode_ascii", "a"},
        {nul_inside, "base64_decode_hex", "610062ff"},
        {nul_inside, "base64_decode_hex_with_space", "61 00 62 FF"},
        {QByteArray("gr\xC3\xBC\xC3\x9F").toBase64(), "base64_decode_ascii", "gr\xC3\xBC\xC3\x9F"},
        {"Y* W\nI=", "base64_decode_ascii", "ab"}, // what is not of the alphabet is skipped
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.choice) + " of " + row.bytes.left(40).toHex().toStdString());
        Calculator calculator(row.bytes);
        const QString button = QString("radioButton_") + row.choice;
        EXPECT_EQ(calculator.click(button), row.lsb_first);
        EXPECT_EQ(calculator.click("checkBox_msb"), row.lsb_first);
        EXPECT_EQ(calculator.click(button), row.msb_first.empty() ? row.lsb_first : row.msb_first);
    }
}

TEST(HashSelectDialog, LeavesTheResultAloneForAnAlgorithmThatItDoesNotHave)
{
    Calculator calculator("1");
    EXPECT_EQ(calculator.click("radioButton_xor8"), "31 (Bit wise NOT: ce)");
    EXPECT_EQ(calculator.click("radioButton_sha1"), "31 (Bit wise NOT: ce)");
    EXPECT_TRUE(calculator.dialog.findChild<QAbstractButton*>("radioButton_xor8")->isChecked());
}

TEST(HashSelectDialog, EndsWithWhatTheUserPressed)
{
    Calculator accepted("1");
    EXPECT_FALSE(accepted.dialog.append_checked());
    accepted.click("checkBox");
    accepted.end(QDialogButtonBox::Ok);
    EXPECT_EQ(accepted.dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(accepted.dialog.append_checked());

    Calculator rejected("1");
    rejected.dialog.setResult(QDialog::Accepted);
    rejected.end(QDialogButtonBox::Cancel);
    EXPECT_EQ(rejected.dialog.result(), QDialog::Rejected);
}

} // namespace
