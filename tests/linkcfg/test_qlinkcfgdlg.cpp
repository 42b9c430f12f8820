#include "linkcfg/qlinkcfgdlg.h"

#include "linkcfg/qserialcfgwidget.h"
#include "pagetest.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>

using LinkDialog = PageTest<QLinkCfgDlg>;

TEST_F(LinkDialog, ShowsThePageOfItsTypeAndKeepsTheTypeAfterCancelToo)
{
    const auto ok = QDialogButtonBox::Ok, cancel = QDialogButtonBox::Cancel;
    const struct
    {
        const char* before;
        int type;
        const char* keys; // typed into the box of types
        QDialogButtonBox::StandardButton end;
        const char* after;
    } rows[] = {
        {"", 0, "", ok, ""},
        {"", 0, "U", cancel, "[QLinkCfgDlg]\nlink_type=3\n"},
        {"[QLinkCfgDlg]\nlink_type=1\n", 1, "S", ok, "[QLinkCfgDlg]\nlink_type=0\n"},
        {"[QLinkCfgDlg]\nlink_type=4\n", -1, "", ok, "[QLinkCfgDlg]\nlink_type=-1\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.before) + row.keys);
        open(row.before);
        const auto shows_its_page = [this] {
            return child<QStackedWidget>("page_stack")->currentIndex() ==
                   qMax(page->link_type(), 0);
        };
        EXPECT_EQ(page->link_type(), row.type);
        EXPECT_TRUE(shows_its_page());
        QTimer::singleShot(0, page.get(), [&] {
            QTest::keyClicks(child<QComboBox>("link_type_box"), row.keys);
            EXPECT_TRUE(shows_its_page());
            child<QDialogButtonBox>("button_box")->button(row.end)->click();
        });
        EXPECT_EQ(page->exec(), row.end == ok ? 1 : 0);
        EXPECT_EQ(close(), row.after);
    }
}

TEST_F(LinkDialog, TabGoesDownTheLabelledRowsToTheButtonsAndTheType)
{
    open("");
    page->show();
    ASSERT_TRUE(wait_until([&] { return page->isActiveWindow(); }));
    child<QComboBox>("portComboBox")->setFocus();
    const auto* const grid = qobject_cast<QGridLayout*>(page->serial_widget()->layout());
    const auto tab = [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); };
    QStringList labels;
    for (int row = 0; row < 7; ++row, tab()) {
        labels += qobject_cast<QLabel*>(grid->itemAtPosition(row, 0)->widget())->text();
        EXPECT_EQ(grid->itemAtPosition(row, 1)->widget(), QApplication::focusWidget()) << row;
    }
    EXPECT_EQ(labels.join(' '),
              "Port: Baud Rate: Data Bits: Stop Bits: Parity: Flow Ctrl: Timeout:");
    for (int buttons = 0; buttons < 2; ++buttons, tab())
        EXPECT_TRUE(qobject_cast<QPushButton*>(QApplication::focusWidget()));
    EXPECT_EQ(QApplication::focusWidget(), child<QComboBox>("link_type_box"));
}
