// The calculator as a user sees it: a shown dialog, clicked with the mouse.
#include "checksum/hashselectdialog.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

// Clicks on the mark itself: a wide cell is not part of a short text's button.
static QString click(const HashSelectDialog& dialog, const QString& name)
{
    auto* const button = dialog.findChild<QAbstractButton*>(name);
    QTest::mouseClick(button, Qt::LeftButton, {}, {8, button->height() / 2});
    return dialog.result_text();
}

TEST(HashSelectDialog, ShowsEachValueInEitherOrder)
{
    const QByteArray digits = "123456789";
    const QByteArray nul_inside = QByteArray("a\0b\xFF", 4).toBase64();
    const std::tuple<QByteArray, const char*, QString, QString> rows[] = {
        // bytes, choice, and what is shown with the least and with the most significant byte first
        {digits, "sum8", "dd (Bit wise NOT: 22)", "dd (Bit wise NOT: 22)"},
        {digits, "crc8", "a1 (Bit wise NOT: 5e)", "a1 (Bit wise NOT: 5e)"},
        {digits, "xor8", "31 (Bit wise NOT: ce)", "31 (Bit wise NOT: ce)"},
        {digits, "sum16", "dd 01 (Bit wise NOT: 22 fe)", "01 dd (Bit wise NOT: fe 22)"},
        {digits, "crc16", "37 4b (Bit wise NOT: c8 b4)", "4b 37 (Bit wise NOT: b4 c8)"},
        {digits, "crc32", "d9 c6 0b 34 (Bit wise NOT: 26 39 f4 cb)",
         "34 0b c6 d9 (Bit wise NOT: cb f4 39 26)"},
        {digits, "md5", "25 F9 E7 94 32 3B 45 38 85 F5 18 1F 1B 62 4D 0B",
         "25 F9 E7 94 32 3B 45 38 85 F5 18 1F 1B 62 4D 0B"},
        {"\xFF\xE7", "crc16", "00 0a (Bit wise NOT: ff f5)", "0a 00 (Bit wise NOT: f5 ff)"},
        {QByteArray("\0\xFA\n", 3), "base64_encode", "APoK", "APoK"},
        {nul_inside, "base64_decode_ascii", "a", "a"},
        {nul_inside, "base64_decode_hex", "610062ff", "610062ff"},
        {nul_inside, "base64_decode_hex_with_space", "61 00 62 FF", "61 00 62 FF"},
        {"Y* W\nI=", "base64_decode_ascii", "ab", "ab"}, // what is not of the alphabet is skipped
        {"1", "sha1", "", ""},                           // the dialog doesn't have it
    };
    for (const auto& [bytes, choice, lsb_first, msb_first] : rows) {
        HashSelectDialog dialog(bytes, nullptr);
        dialog.show();
        const QString button = QString("radioButton_") + choice;
        EXPECT_EQ(click(dialog, button), lsb_first) << choice;
        EXPECT_EQ(click(dialog, "checkBox_msb"), lsb_first) << choice;
        EXPECT_EQ(click(dialog, button), msb_first) << choice;
    }
}

TEST(HashSelectDialog, EndsWithWhatTheUserPressed)
{
    for (const auto& which : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel}) {
        HashSelectDialog dialog("1", nullptr);
        dialog.show();
        EXPECT_FALSE(dialog.append_checked());
        click(dialog, "checkBox");
        EXPECT_TRUE(dialog.append_checked());
        const bool accepts = which == QDialogButtonBox::Ok;
        dialog.setResult(accepts ? QDialog::Rejected : QDialog::Accepted);
        dialog.findChild<QDialogButtonBox*>("buttonBox")->button(which)->click();
        EXPECT_EQ(dialog.result(), accepts ? QDialog::Accepted : QDialog::Rejected);
    }
}
