#include "linkcfg/qlinkcfgdlg.h"

#include "linkcfg/inifile.h"
#include "pagetest.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>

using LinkDialog = PageTest<QLinkCfgDlg>;

TEST_F(LinkDialog, ShowsThePageOfItsTypeAndKeepsTheTypeAfterCancelToo)
{
    const auto ok = QDialogButtonBox::Ok, cancel = QDialogButtonBox::Cancel;
    // The file before, its type, keys typed into the box of types, how it ends, and the file after.
    const std::tuple<const char*, int, const char*, QDialogButtonBox::StandardButton, const char*>
        rows[] = {
            {"", 0, "", ok, ""},
            {"", 0, "U", cancel, "[QLinkCfgDlg]\nlink_type=3\n"},
            {"[QLinkCfgDlg]\nlink_type=1\n", 1, "S", ok, "[QLinkCfgDlg]\nlink_type=0\n"},
            {"[QLinkCfgDlg]\nlink_type=4\n", -1, "", ok, "[QLinkCfgDlg]\nlink_type=-1\n"},
        };
    for (const auto& [before, type, keys, end, after] : rows) {
        SCOPED_TRACE(after);
        open(before);
        EXPECT_EQ(page->link_type(), type);
        QTimer::singleShot(0, page.get(), [&, keys = keys, end = end] {
            QTest::keyClicks(child<QComboBox>("link_type_box"), keys);
            EXPECT_EQ(child<QStackedWidget>("page_stack")->currentIndex(),
                      qMax(page->link_type(), 0));
            child<QDialogButtonBox>("button_box")->button(end)->click();
        });
        EXPECT_EQ(page->exec(), end == ok ? 1 : 0);
        EXPECT_EQ(close(), after);
    }
}

TEST_F(LinkDialog, TabGoesDownTheRowsToTheButtonsAndTheType)
{
    open("");
    page->show();
    ASSERT_TRUE(wait_until([&] { return page->isActiveWindow(); }));
    child<QComboBox>("portComboBox")->setFocus();
    QStringList names;
    for (QWidget* at = nullptr; names.size() < 10; QTest::keyClick(at, Qt::Key_Tab)) {
        at = QApplication::focusWidget();
        names += at->objectName().section(QRegularExpression("ComboBox|SpinBox"), 0, 0);
    }
    EXPECT_EQ(names.join(' '), "port baud dataBits stopBits parity flow timeout   link_type_box");
}

// That of a program killed between making and filling it, for which Qt alone waits.
TEST_F(LinkDialog, TakesAwayAnEmptyLockOnly)
{
    for (const QByteArray& owner : {QByteArray(), QByteArray("1\nsomebody\n")}) {
        file_write(path + ".lock", owner);
        IniFile(path).value("key");
        EXPECT_EQ(QFile::exists(path + ".lock"), !owner.isEmpty());
    }
}
