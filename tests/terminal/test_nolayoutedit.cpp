// What NoLayoutEdit relies on in Qt, by the class that derives from it.
#include "terminal/receivearea.h"

#include "wait.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QTextBlock>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

class NoLayout : public testing::Test
{
protected:
    NoLayout()
    {
        area.setReadOnly(true);
        area.resize(400, 300);
        area.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&area));
        area.append_chunk(QString(), QString("line\n").repeated(200));
    }
    void set_cursor(int position)
    {
        QTextCursor cursor(area.document());
        cursor.setPosition(position);
        static_cast<QPlainTextEdit&>(area).setTextCursor(cursor);
    }
    // Opens the menu as a key does, chooses an entry of it and closes it.
    void choose_by_menu(const char* name)
    {
        QTimer::singleShot(0, &area, [name] {
            QWidget* const menu = QApplication::activePopupWidget();
            ASSERT_TRUE(menu && menu->findChild<QAction*>(name)) << name;
            menu->findChild<QAction*>(name)->trigger();
            menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint());
        QCoreApplication::sendEvent(&area, &event);
    }

    ReceiveArea area;
    QScrollBar& bar = *area.verticalScrollBar();
};

} // namespace

TEST_F(NoLayout, LaysNothingOutWhateverIsDone)
{
    const std::pair<const char*, std::function<void()>> actions[] = {
        {"a chunk", [this] { area.append_chunk("prefix", "long text ", 1); }},
        {"a stock insertion", [this] { area.insertPlainText("text\ntext"); }},
        {"a stock cursor", [this] { set_cursor(500); }},
        {"another font", [this] { area.font_grow(); }},
        {"another style", [this] { area.setStyleSheet("color: red"); }},
        {"the focus", [this] { area.setFocus(), area.clearFocus(); }},
        {"hidden and shown", [this] { area.hide(), area.show(), area.grab(); }},
        {"another size", [this] { area.resize(200, 200); }},
        {"fewer lines", [this] { area.document()->setMaximumBlockCount(50); }},
        {"all selected by the menu", [this] { choose_by_menu("select-all"); }},
        {"a cursor whose slot clears", [this] {
             QObject::connect(&area, &QPlainTextEdit::selectionChanged, &area, [this] {
                 area.disconnect(SIGNAL(selectionChanged()));
                 area.clear();
             });
             set_cursor(3);
         }}};
    for (const auto& [what, act] : actions) {
        act();
        QCoreApplication::processEvents();
        for (QTextBlock block = area.document()->begin(); block.isValid(); block = block.next())
            ASSERT_EQ(block.layout()->lineCount(), 0) << "laid out by Qt: " << what;
        if (what == std::string("all selected by the menu")) {
            EXPECT_EQ(area.textCursor().selectedText().size(), area.text_length());
        }
        EXPECT_EQ(area.text_length(), area.document()->characterCount() - 1) << what;
    }
    EXPECT_EQ(area.text_length(), 0);
}

TEST_F(NoLayout, TurnsPagesByKeysAndShowsACursorThatIsSet)
{
    const int end = bar.maximum();
    QTest::keyClick(&area, Qt::Key_PageUp);
    EXPECT_EQ(bar.value(), end - area.visible_rows());
    EXPECT_LE(area.visible_rows() * area.cursorRect().height(), area.viewport()->height());
    QTest::keyClick(&area, Qt::Key_PageDown);
    EXPECT_EQ(bar.value(), end);
    set_cursor(10 * 5);
    EXPECT_EQ(bar.value(), 10);
    area.ensureCursorVisible();
    EXPECT_EQ(bar.value(), 10) << "the stock widget scrolls by itself";
}
