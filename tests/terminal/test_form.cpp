#include "windowtest.h"

#include <QAction>
#include <QDockWidget>
#include <QStatusBar>

namespace {

class Form : public WindowTest
{
protected:
    Form() { window_start(); }
};

} // namespace

TEST_F(Form, HasTheWindowFrame)
{
    EXPECT_EQ(window->windowTitle(), "Tarnwick [tarnwick.ini]");
    EXPECT_FALSE(window->windowIcon().isNull());
    EXPECT_FALSE(find<QDockWidget>("dockWidget_extend")->isVisible());
    for (const char* const dock : {"dockWidget", "dockWidget_extend"})
        EXPECT_EQ(find<QDockWidget>(dock)->features(),
                  QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);

    QStringList status;
    for (const QObject* child : find<QStatusBar>("statusBar")->children())
        if (const auto* const label = qobject_cast<const QLabel*>(child))
            status += label->text();
    EXPECT_EQ(status.mid(1), QStringList({"COMx", "CNT: 0", "TX: 0", "RX: 0"}));

    const auto* const area = find<QPlainTextEdit>("plainTextEdit_recv");
    EXPECT_TRUE(area->isReadOnly());
    EXPECT_FALSE(area->isUndoRedoEnabled());
    EXPECT_EQ(area->textInteractionFlags(), Qt::TextSelectableByMouse);
}

TEST_F(Form, DeclaresItsSlotsInOrder)
{
    const QMetaObject* const meta = window->metaObject();
    QStringList slots_by_name;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
        slots_by_name += meta->method(i).name();
    ASSERT_EQ(slots_by_name.size(), 36);
    EXPECT_EQ(slots_by_name.first(), "msgbox");
    EXPECT_EQ(slots_by_name[17], "on_checkBox_hex_mode_stateChanged");
    EXPECT_EQ(slots_by_name.last(), "on_action_about_triggered");
}

TEST_F(Form, TellsAboutItself)
{
    find<QAction>("action_about")->trigger();
    EXPECT_EQ(answers.boxes, QStringList("Tarnwick|Corvane Serial Tool\nV1.14 build Jan 11 2018"));
}

TEST_F(WindowTest, StartsWithoutACatalogueAfterOneMessage)
{
    configure("global/language", "xx_YY");
    window_start();
    EXPECT_EQ(answers.boxes, QStringList("note|loading language tarnwick_xx_YY failed"));
    EXPECT_EQ(find<QPushButton>("pushButton_open")->text(), "&open");
}
