#include "terminal/receivearea.h"

#include "wait.h"

#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <gtest/gtest.h>
#include <random>

namespace {

const QString WIDE(QChar(0x56FD));

QTextCursor cursor_at(const QPlainTextEdit& edit, int anchor, int position)
{
    QTextCursor cursor(edit.document());
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    return cursor;
}

// Words and blanks, sometimes a new paragraph; if `uneven`, also tabs, wide and combining
// characters and line breaks of all kinds.
QString random_text(std::mt19937& random, int length, bool uneven)
{
    static const QStringList BETWEEN = {" ",       " ",      " ",      " ",      " ",
                                        "  ",      "",       "\n",     "\t",     WIDE,
                                        "e\u0301", "\u0301", "\uFFFD", "\x01",   "\r",
                                        "\r\n",    "\u2028", "\u2029", "\u00A0", QChar(0xFDD0)};
    QString text;
    while (text.size() < length)
        text += QString(int(random() % 12), QChar('a' + char(random() % 26))) +
                BETWEEN[int(random() % (uneven ? unsigned(BETWEEN.size()) : 8))];
    return text;
}

class Area : public testing::Test
{
protected:
    Area()
    {
        area.setReadOnly(true);
        area.resize(400, 300);
        area.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&area));
    }
    ~Area() override
    {
        for (QTextBlock block = area.document()->begin(); block.isValid(); block = block.next())
            EXPECT_EQ(block.layout()->lineCount(), 0) << "laid out by Qt";
    }

    void append(const QString& text) { area.append_chunk(QString(), text); }
    QScrollBar& bar() { return *area.verticalScrollBar(); }
    void set_cursor(int position) { area.setTextCursor(cursor_at(area, position, position)); }
    QRect place_of(int at) const { return area.cursorRect(cursor_at(area, at, at)); }
    // Where the character after a position begins.
    QPoint point_of(int position) const { return place_of(position).center() + QPoint(1, 0); }
    void mouse(QEvent::Type type, const QPoint& point, Qt::MouseButtons buttons = Qt::LeftButton)
    {
        const QPoint on_screen = area.viewport()->mapToGlobal(point);
        QMouseEvent event(type, point, point, on_screen, Qt::LeftButton, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(area.viewport(), &event);
    }

    ReceiveArea area;
};

} // namespace

TEST_F(Area, HoldsWhatAStockWidgetHoldsInTheRowsOfItsText)
{
    for (unsigned seed = 1; seed <= 6; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
        QPlainTextEdit stock;
        stock.setFont(area.font());
        area.clear();
        area.document()->setMaximumBlockCount(0);
        for (int step = 0; step < 150; ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
            const int end = stock.document()->characterCount() - 1;
            const int count = qMin(end, below(300)), from = below(end - count + 1);
            const int most_lines = below(2) * below(100);
            const QString text = random_text(random, below(800), seed % 2 == 0 && below(2) == 0);
            const QString prefix = below(3) == 0 ? "\n[12:00:00.000] " : "";
            const int kind = step % 75 == 74 ? 0 : 1 + below(19);
            for (QPlainTextEdit* edit : {static_cast<QPlainTextEdit*>(&area), &stock}) {
                if (kind == 0)
                    edit->clear();
                else if (kind == 1)
                    edit->document()->setMaximumBlockCount(most_lines);
                else if (kind == 2)
                    edit->setTextCursor(cursor_at(*edit, from + count, from));
                else if (kind == 3)
                    cursor_at(*edit, from, from + count).insertText(text);
                else if (kind == 4)
                    cursor_at(*edit, 0, count).removeSelectedText();
                else if (kind == 5)
                    cursor_at(*edit, end - count, end).removeSelectedText();
            }
            if (kind == 6)
                area.resize(40 + below(500), 100 + below(300));
            if (kind > 6 && kind < 10) {
                area.append_line(prefix + text, QBrush(Qt::blue));
                stock.moveCursor(QTextCursor::End);
                const QTextCharFormat format = stock.currentCharFormat();
                QTextCharFormat blue = format;
                blue.setForeground(QBrush(Qt::blue));
                stock.textCursor().insertText(prefix + text, blue);
                stock.textCursor().insertText("\n", format);
            }
            if (kind >= 10) {
                const int last_paragraph = stock.document()->lastBlock().length() - 1;
                const int replaced = kind < 14 ? qMin(below(4), last_paragraph) : 0;
                area.append_chunk(prefix, text, replaced);
                stock.setTextCursor(cursor_at(stock, end - replaced, end));
                stock.insertPlainText(prefix + text);
                ASSERT_EQ(bar().value(), bar().maximum());
            }

            const int length = area.document()->characterCount() - 1;
            const QString all = cursor_at(area, 0, length).selectedText();
            ASSERT_EQ(area.toPlainText(), stock.toPlainText());
            ASSERT_TRUE(area.document()->toHtml() == stock.document()->toHtml()) << "colours";
            ASSERT_EQ(area.textCursor().position(), stock.textCursor().position());
            ASSERT_EQ(area.textCursor().anchor(), stock.textCursor().anchor());
            RowTable rows(area.columns());
            rows.append(all);
            for (int row = 0; row < rows.row_count(); ++row)
                ASSERT_EQ(area.row_text(row),
                          all.mid(rows.row_start(row), rows.row_end(row) - rows.row_start(row)));
            ASSERT_EQ(bar().maximum(), qMax(0, rows.row_count() - area.visible_rows()));
        }
        area.grab(); // what it holds can be painted
    }
}

TEST_F(Area, PaintsEachCharacterInItsCell)
{
    std::mt19937 random(3);
    const QString characters = "#W  \t" + WIDE;
    QString text(100, '#');
    while (text.size() < 1600)
        text += characters[int(random() % unsigned(characters.size()))];
    append(text);
    for (const int width : {90, 237, 400}) {
        area.resize(width, 300);
        bar().setValue(2);
        const QImage image = area.viewport()->grab().toImage();
        const int cell = place_of(1).x() - place_of(0).x();
        EXPECT_NEAR(area.columns() * cell, area.viewport()->width(), 3 * cell);
        for (int at = 0; at < text.size(); ++at) {
            const QRect place = place_of(at).adjusted(cell / 4, 0, cell / 2, 0);
            const QRect last = place.translated(text[at] == WIDE[0] ? cell : 0, 0);
            for (const QRect& part : {place, last}) {
                QImage blank(part.size(), image.format());
                blank.fill(area.palette().base().color());
                ASSERT_TRUE(!image.rect().contains(part) ||
                            (image.copy(part) == blank) == text[at].isSpace())
                    << at << ' ' << width;
            }
        }
    }
}

TEST_F(Area, CopiesExactlyWhatADragSelects)
{
    std::mt19937 random(5);
    QString text;
    while (text.size() < 400)
        text += random() % 30 == 0 ? "\n" : random() % 9 == 0 ? WIDE : QString("a");
    append(text);
    bar().setValue(0);
    for (int from = 0; from < 300; ++from) {
        const int to = (from + 1 + int(random() % 299)) % 300;
        set_cursor(0);
        mouse(QEvent::MouseButtonPress, point_of(from));
        mouse(QEvent::MouseMove, point_of(to) - QPoint(from % 2 * 3, 0));
        mouse(QEvent::MouseButtonRelease, point_of(to), Qt::NoButton);
        ASSERT_EQ(area.textCursor().anchor(), from);
        ASSERT_EQ(area.textCursor().position(), to);
        area.copy();
        ASSERT_EQ(QApplication::clipboard()->text(), text.mid(qMin(from, to), qAbs(to - from)));
        const QPoint past_middle = point_of(from) + QPoint(5, 0);
        const bool row_goes_on = text[from] != '\n' && point_of(from + 1).y() > past_middle.y();
        EXPECT_TRUE(!row_goes_on || area.cursorForPosition(past_middle).position() == from);
    }
}

TEST_F(Area, SelectsWordsAndParagraphsAsAStockWidget)
{
    QApplication::setDoubleClickInterval(10000); // however slow the machine
    const QString text = "  one  foo_bar 12.5,(x)\nsecond line; can't 50\u00B0\n\n a.b?c!d@e#f$g:h"
                         "-i<j>k[l]m{n}o=p/q+r%s&t^u*v\"w`x~y|z\\ \t\u56FD last ";
    QPlainTextEdit stock(text);
    stock.setFont(area.font());
    stock.resize(800, 300);
    stock.show();
    area.resize(800, 300);
    append(text);
    for (int position = 0; position < text.size(); ++position) {
        const QRect in_stock = stock.cursorRect(cursor_at(stock, position, position));
        const QPoint there = in_stock.center() + QPoint(2, 0), here = point_of(position);
        QTest::mouseDClick(stock.viewport(), Qt::LeftButton, {}, there);
        QTest::mouseDClick(area.viewport(), Qt::LeftButton, {}, here);
        EXPECT_EQ(area.textCursor().selectedText(), stock.textCursor().selectedText()) << position;
        QTest::mouseClick(stock.viewport(), Qt::LeftButton, {}, there);
        QTest::mouseClick(area.viewport(), Qt::LeftButton, {}, here);
        EXPECT_EQ(area.textCursor().selectedText(), stock.textCursor().selectedText()) << position;
        stock.setTextCursor(cursor_at(stock, 0, 0));
        set_cursor(0);
    }
}

TEST_F(Area, ScrollsByKeysAndADragPastItsEdgeAndToItsCursor)
{
    const QString line = "\u2028a\u00A0b\n"; // two rows
    append(line.repeated(300000));           // more than is copied with its colours
    const int end = bar().maximum();
    QTest::keyClick(&area, Qt::Key_PageUp);
    EXPECT_EQ(bar().value(), end - area.visible_rows());
    EXPECT_LE(area.visible_rows() * area.cursorRect().height(), area.viewport()->height());
    QTest::keyClick(&area, Qt::Key_PageDown);
    EXPECT_EQ(bar().value(), end);
    set_cursor(10 * line.size());
    static_cast<QPlainTextEdit&>(area).ensureCursorVisible(); // has to leave that to the area
    EXPECT_EQ(bar().value(), 10 * 2);
    mouse(QEvent::MouseButtonPress, QPoint(20, 100));
    mouse(QEvent::MouseMove, QPoint(20, -300));
    EXPECT_TRUE(wait_until([&] { return bar().value() == 0; }));
    EXPECT_LT(area.textCursor().position(), line.size()) << "not in the first line";
    mouse(QEvent::MouseMove, QPoint(20, area.viewport()->height() + 300));
    EXPECT_TRUE(wait_until([&] { return bar().value() > 20; }));
    mouse(QEvent::MouseButtonRelease, QPoint(20, 0), Qt::NoButton);
    EXPECT_TRUE(area.textCursor().hasSelection());
    QTest::keyClick(&area, Qt::Key_A, Qt::ControlModifier);
    area.copy();
    EXPECT_TRUE(QApplication::clipboard()->text() == area.toPlainText());
}

TEST_F(Area, KeepsTheReadersPlaceUntilTheNextChunk)
{
    append("old\n" + QString("some words in a row ").repeated(2000));
    QCoreApplication::processEvents(); // the scroll bar takes its place
    bar().setValue(100);
    area.document()->setMaximumBlockCount(1);
    EXPECT_EQ(bar().value(), 100);
    const QString top = area.row_text(100);
    area.resize(300, 250);
    EXPECT_TRUE(area.row_text(bar().value()).contains(top.left(8))) << "the text moved on a resize";
    area.selectAll();
    EXPECT_NE(bar().value(), bar().maximum());
    append("more");
    EXPECT_EQ(bar().value(), bar().maximum());
    EXPECT_FALSE(area.textCursor().hasSelection());
    area.resize(200, 250);
    EXPECT_EQ(bar().value(), bar().maximum()) << "the newest text is followed through a resize";
}

TEST_F(Area, PaintsTheLastChangeOfAFrame)
{
    struct Watch : QObject
    {
        int paints = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } watch;
    area.viewport()->installEventFilter(&watch);
    for (int before = 0; before < 3; before = watch.paints) {
        append("chunk");
        ASSERT_TRUE(wait_until([&] { return watch.paints > before; }));
    }
}
