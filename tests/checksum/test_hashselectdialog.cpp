// The calculator as a user sees it: a shown dialog, clicked with the mouse.
#include "hashselectdialog.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFrame>
#include <QGridLayout>
#include <QLineEdit>
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

struct Cell
{
    const char* name;
    const char* class_name;
    int row, column, columns;
    const char* text = "";
    bool enabled = true;
};

TEST(HashSelectDialog, LaysItsMembersOutInOrder)
{
    const Cell cells[] = {
        {"radioButton_crc32", "QRadioButton", 2, 1, 1, "CRC32"},
        {"radioButton_sum8", "QRadioButton", 0, 0, 1, "SUM8"},
        {"buttonBox", "QDialogButtonBox", 17, 0, 2},
        {"radioButton_base64_decode_hex_with_space", "QRadioButton", 10, 0, 1,
         "Base64 Decode(HEX with space)"},
        {"radioButton_base64_decode_ascii", "QRadioButton", 7, 1, 1, "Base64 Decode(ASCII)"},
        {"radioButton_base64_encode", "QRadioButton", 7, 0, 1, "Base64 Encode"},
        {"radioButton_crc16", "QRadioButton", 2, 0, 1, "CRC16"},
        {"radioButton_xor8", "QRadioButton", 1, 0, 1, "XOR8"},
        {"radioButton_sum16", "QRadioButton", 0, 1, 1, "SUM16"},
        {"radioButton_crc8", "QRadioButton", 1, 1, 1, "CRC8"},
        {"checkBox", "QCheckBox", 13, 0, 1, "&Append to send window"},
        {"line_3", "QFrame", 3, 0, 2},
        {"line", "QFrame", 11, 0, 2},
        {"line_2", "QFrame", 6, 0, 2},
        {"radioButton_sha1", "QRadioButton", 5, 1, 1, "SHA1", false},
        {"lineEdit", "QLineEdit", 15, 0, 2},
        {"radioButton_base64_decode_hex", "QRadioButton", 10, 1, 1, "Base64 Decode(HEX no space)"},
        {"radioButton_md5", "QRadioButton", 5, 0, 1, "MD5"},
        {"checkBox_msb", "QCheckBox", 13, 1, 1, "MSB"},
    };
    HashSelectDialog dialog("1", nullptr);
    EXPECT_EQ(dialog.windowTitle(), "CRC & Hash");
    EXPECT_EQ(dialog.size(), QSize(420, 262));
    const auto* grid = dialog.findChild<QGridLayout*>("gridLayout");
    ASSERT_EQ(grid, dialog.layout());
    ASSERT_EQ(grid->count(), int(std::size(cells)));
    for (int n = 0; n < grid->count(); ++n) {
        SCOPED_TRACE(cells[n].name);
        const QWidget* widget = grid->itemAt(n)->widget();
        ASSERT_EQ(widget->objectName(), cells[n].name);
        EXPECT_STREQ(widget->metaObject()->className(), cells[n].class_name);
        int row, column, rows, columns;
        grid->getItemPosition(n, &row, &column, &rows, &columns);
        EXPECT_THAT((std::array{row, column, rows, columns}),
                    testing::ElementsAre(cells[n].row, cells[n].column, 1, cells[n].columns));
        EXPECT_EQ(widget->isEnabled(), cells[n].enabled);
        if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
            EXPECT_EQ(button->text(), cells[n].text);
            EXPECT_FALSE(button->isChecked());
        }
        if (QString(cells[n].name).startsWith("line_") || QString(cells[n].name) == "line") {
            const auto* frame = qobject_cast<const QFrame*>(widget);
            EXPECT_EQ(frame->frameShape(), QFrame::HLine);
            EXPECT_EQ(frame->frameShadow(), QFrame::Sunken);
        }
    }
    const auto* box = dialog.findChild<QDialogButtonBox*>("buttonBox");
    EXPECT_EQ(box->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    EXPECT_EQ(box->orientation(), Qt::Horizontal);
    EXPECT_TRUE(box->centerButtons());
    EXPECT_TRUE(dialog.findChild<QLineEdit*>("lineEdit")->isReadOnly());
}

} // namespace
