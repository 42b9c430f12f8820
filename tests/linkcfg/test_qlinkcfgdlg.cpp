#include "qlinkcfgdlg.h"

#include "dialogfile.h"
#include "pty.h"
#include "qserialcfgwidget.h"
#include "qtcpipcfgwidget.h"
#include "wait.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTimer>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

// A file that a machine with one port leaves as it is.
class LinkDialog : public testing::Test
{
protected:
    LinkDialog() { pty.link_into(file.box().ports_folder(), "a"); }

    DialogFile file;
    Pty pty;
};

QStackedWidget* stack(const QLinkCfgDlg& dialog)
{
    return dialog.findChild<QStackedWidget*>("page_stack");
}

QComboBox* type_box(const QLinkCfgDlg& dialog)
{
    return dialog.findChild<QComboBox*>("link_type_box");
}

QPushButton* button(const QLinkCfgDlg& dialog, QDialogButtonBox::StandardButton which)
{
    return dialog.findChild<QDialogButtonBox*>("button_box")->button(which);
}

struct TypeRow
{
    const char* name;
    std::string before;
    int shown_type, shown_page;
    const char* keys; // typed into the box of types
    QDialogButtonBox::StandardButton end;
    std::string after;
};

class LinkDialogType : public LinkDialog, public testing::WithParamInterface<TypeRow>
{
};

TEST_P(LinkDialogType, is_shown_followed_and_kept)
{
    const TypeRow& row = GetParam();
    file.write(row.before);
    {
        QLinkCfgDlg dialog(nullptr, file.path());
        EXPECT_EQ(dialog.link_type(), row.shown_type);
        EXPECT_EQ(stack(dialog)->currentIndex(), row.shown_page);
        QTimer::singleShot(0, &dialog, [&] {
            QTest::keyClicks(type_box(dialog), row.keys);
            EXPECT_EQ(stack(dialog)->currentIndex(), std::max(dialog.link_type(), 0));
            QTest::mouseClick(button(dialog, row.end), Qt::LeftButton);
        });
        EXPECT_EQ(dialog.exec(), row.end == QDialogButtonBox::Ok ? 1 : 0);
        EXPECT_EQ(file.text(), row.before) << "nothing is stored before the dialog goes";
    }
    EXPECT_EQ(file.text(), row.after);
}

INSTANTIATE_TEST_SUITE_P(
    Types, LinkDialogType,
    testing::Values(TypeRow{"nothing_changed", "", 0, 0, "", QDialogButtonBox::Ok, ""},
                    TypeRow{"can_kept", "", 0, 0, "C", QDialogButtonBox::Ok,
                            "[QLinkCfgDlg]\nlink_type=2\n"},
                    TypeRow{"usb_kept_after_cancel", "", 0, 0, "U", QDialogButtonBox::Cancel,
                            "[QLinkCfgDlg]\nlink_type=3\n"},
                    TypeRow{"stored_one_stays", "[QLinkCfgDlg]\nlink_type=1\n", 1, 1, "",
                            QDialogButtonBox::Cancel, "[QLinkCfgDlg]\nlink_type=1\n"},
                    TypeRow{"back_to_serial", "[QLinkCfgDlg]\nlink_type=1\n", 1, 1, "S",
                            QDialogButtonBox::Ok, "[QLinkCfgDlg]\nlink_type=0\n"},
                    TypeRow{"no_such_type", "[QLinkCfgDlg]\nlink_type=4\n", -1, 0, "",
                            QDialogButtonBox::Ok, "[QLinkCfgDlg]\nlink_type=-1\n"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(LinkDialog, stores_its_pages_after_cancel_too)
{
    {
        QLinkCfgDlg dialog(nullptr, file.path());
        dialog.serial_widget()->findChild<QSpinBox*>("timeoutSpinBox")->setValue(10);
        dialog.tcpip_widget()->findChild<QSpinBox*>("spinBox_timeot")->setValue(20);
        dialog.reject();
    }
    EXPECT_EQ(file.text(), "[serialSettings]\nbaudrate=14\ncustombaud=1500000\ndatabits=3\n"
                           "flowctl=0\nparity=0\nport=0\nstopbits=0\ntimeout=10\n\n"
                           "[tcpip_cfg]\ntimeout=20\n");
}

TEST_F(LinkDialog, tab_goes_from_the_page_to_the_buttons_to_the_type)
{
    QLinkCfgDlg dialog(nullptr, file.path());
    dialog.show();
    ASSERT_TRUE(wait_until([&] { return dialog.isActiveWindow(); }));
    QWidget* timeout = dialog.serial_widget()->findChild<QSpinBox*>("timeoutSpinBox");
    timeout->setFocus();
    QWidgetList visited;
    for (int tab = 0; tab < 4; ++tab) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visited += QApplication::focusWidget();
    }
    const auto buttons = dialog.findChild<QDialogButtonBox*>("button_box")->buttons();
    EXPECT_EQ(visited, (QWidgetList{buttons.at(0), buttons.at(1), type_box(dialog),
                                    dialog.findChild<QComboBox*>("portComboBox")}));
}

} // namespace
