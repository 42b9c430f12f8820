#include "windowtest.h"

#include <QAction>
#include <QDockWidget>
#include <QGridLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QStatusBar>
#include <QTableWidget>

namespace {

struct Cell
{
    const char* name;
    const char* type;
    const char* layout;
    int row, column, row_span, column_span;
    const char* text; // of the property that the type shows its text in
    bool enabled = true;
};

const Cell CELLS[] = {
    {"plainTextEdit_recv", "QPlainTextEdit", "gridLayout_3", 0, 0, 1, 5, "receive area"},
    {"checkBox_window_auto_clr", "QCheckBox", "gridLayout_2", 1, 0, 1, 1, "auto clear"},
    {"spinBox_auto_clr_threshold", "QSpinBox", "gridLayout_2", 1, 1, 1, 1, "100 lines"},
    {"checkBox_hex_display", "QCheckBox", "gridLayout_2", 1, 2, 1, 1, "hex display"},
    {"pushButton_window_save", "QPushButton", "gridLayout_2", 1, 3, 1, 1, "&save ..."},
    {"pushButton_dsiplay_pause", "QPushButton", "gridLayout_2", 1, 4, 1, 2, "&pause"},
    {"pushButton_extend", "QPushButton", "gridLayout_2", 1, 6, 1, 1, "&extend<<"},
    {"checkBox_frame_mode", "QCheckBox", "gridLayout_2", 2, 0, 1, 1, "frame mode"},
    {"spinBox_frame_interval", "QSpinBox", "gridLayout_2", 2, 1, 1, 1, "5 ms"},
    {"checkBox_display_time", "QCheckBox", "gridLayout_2", 2, 2, 1, 1, "time stamp"},
    {"checkBox_display_tx", "QCheckBox", "gridLayout_2", 2, 3, 1, 1, "display TX"},
    {"pushButton_recv_clr", "QPushButton", "gridLayout_2", 2, 4, 1, 2, "&clear"},
    {"pushButton_crc_hash", "QPushButton", "gridLayout_2", 2, 6, 1, 1, "&CRC && Hash"},
    {"checkBox_save2file", "QCheckBox", "gridLayout_2", 3, 0, 1, 1, "save to &file"},
    {"lineEdit_save2file_path", "QLineEdit", "gridLayout_2", 3, 1, 1, 5, ""},
    {"pushButton_save2file_browse", "QPushButton", "gridLayout_2", 3, 6, 1, 1, "&browse..."},
    {"plainTextEdit_send", "QPlainTextEdit", "gridLayout_2", 4, 0, 6, 6, "send area"},
    {"pushButton_open", "QPushButton", "gridLayout_2", 4, 6, 3, 1, "&open"},
    {"pushButton_send", "QPushButton", "gridLayout_2", 7, 6, 3, 1, "&send", false},
    {"checkBox_hex_mode", "QCheckBox", "gridLayout_2", 10, 0, 1, 1, "hex mode"},
    {"checkBox_raw_text", "QCheckBox", "gridLayout_2", 10, 1, 1, 1, "&raw text"},
    {"checkBox_send_file", "QCheckBox", "gridLayout_2", 10, 2, 1, 1, "send file", false},
    {"checkBox_auto_send", "QCheckBox", "gridLayout_2", 10, 3, 1, 1, "&auto send", false},
    {"spinBox_send_interval", "QSpinBox", "gridLayout_2", 10, 4, 1, 1, "10 ms"},
    {"spinBox_send_count", "QSpinBox", "gridLayout_2", 10, 5, 1, 1, "count 0"},
    {"checkBox_loop", "QCheckBox", "gridLayout_2", 10, 6, 1, 1, "loop", false},
    {"tableWidget_strings", "QTableWidget", "gridLayout", 0, 0, 1, 6, nullptr},
    {"checkBox_send_in_turn", "QCheckBox", "gridLayout", 1, 0, 1, 1, "send in turn at:", false},
    {"spinBox_send_in_turn_interval", "QSpinBox", "gridLayout", 1, 1, 1, 1, "20 ms"},
    {"pushButton_table_row_up", "QPushButton", "gridLayout", 1, 2, 1, 1, ""},
    {"pushButton_table_row_down", "QPushButton", "gridLayout", 1, 3, 1, 1, ""},
    {"pushButton_table_row_add", "QPushButton", "gridLayout", 1, 4, 1, 1, ""},
    {"pushButton_table_row_del", "QPushButton", "gridLayout", 1, 5, 1, 1, ""},
};

struct Range
{
    const char* name;
    int low, high;
};

const Range RANGES[] = {
    {"spinBox_auto_clr_threshold", 5, 99999},    {"spinBox_frame_interval", 1, 500},
    {"spinBox_send_interval", 1, 9999},          {"spinBox_send_count", -1, 999999},
    {"spinBox_send_in_turn_interval", 1, 10000},
};

class Form : public WindowTest
{
protected:
    Form() { window_start(); }
};

} // namespace

TEST_F(Form, HasEachWidgetInItsCell)
{
    for (const Cell& cell : CELLS) {
        QWidget* const widget = find<QWidget>(cell.name);
        EXPECT_TRUE(widget->inherits(cell.type)) << cell.name;
        auto* const grid = window->findChild<QGridLayout*>(cell.layout);
        ASSERT_TRUE(grid);
        EXPECT_EQ(grid->spacing(), 0);
        int row = -1, column = -1, row_span = -1, column_span = -1;
        grid->getItemPosition(grid->indexOf(widget), &row, &column, &row_span, &column_span);
        EXPECT_EQ(std::make_tuple(row, column, row_span, column_span),
                  std::make_tuple(cell.row, cell.column, cell.row_span, cell.column_span))
            << cell.name;
        const char* const text_property =
            widget->inherits("QPlainTextEdit") ? "placeholderText" : "text";
        if (cell.text) {
            EXPECT_EQ(widget->property(text_property).toString(), cell.text) << cell.name;
        }
        EXPECT_EQ(widget->isEnabled(), cell.enabled) << cell.name;
    }
    for (const Range& range : RANGES) {
        const auto* const box = find<QSpinBox>(range.name);
        EXPECT_EQ(std::make_pair(box->minimum(), box->maximum()),
                  std::make_pair(range.low, range.high))
            << range.name;
    }
}

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

    QStringList menu;
    for (const QAction* title : find<QMenuBar>("menuBar")->actions())
        for (const QAction* entry : title->menu()->actions())
            menu += entry->isSeparator() ? "-" : entry->objectName() + "=" + entry->text();
    EXPECT_EQ(
        menu,
        QStringList({"action_load=&load configuration ...", "action_store=&store configuration",
                     "action_store_as=store configuration &as ...", "-", "action_about=&about"}));

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
