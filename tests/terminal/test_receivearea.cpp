#include "terminal/receivearea.h"

#include "slowrows.h"
#include "terminal/framepacer.h"
#include "wait.h"

#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <gtest/gtest.h>

namespace {

// As the document holds it, with '\n' between its blocks.
QString text_of(const QPlainTextEdit& edit)
{
    QTextCursor all(edit.document());
    all.select(QTextCursor::Document);
    return all.selectedText().replace(QChar::ParagraphSeparator, '\n');
}

// "position:colour" of each change of the colour.
QStringList colours_of(const QPlainTextEdit& edit)
{
    QStringList changes;
    for (QTextBlock block = edit.document()->begin(); block.isValid(); block = block.next())
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QString colour = ':' + it.fragment().charFormat().foreground().color().name();
            if (changes.isEmpty() || !changes.last().endsWith(colour))
                changes += QString::number(it.fragment().position()) + colour;
        }
    return changes;
}

QTextCursor cursor_at(const QPlainTextEdit& edit, int anchor, int position)
{
    QTextCursor cursor(edit.document());
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    return cursor;
}

// How a chunk is shown in a stock widget.
void stock_append(QPlainTextEdit& edit, const QString& text)
{
    edit.moveCursor(QTextCursor::End);
    edit.insertPlainText(text);
    edit.moveCursor(QTextCursor::End);
}

// How sent text is shown in one.
void stock_append_line(QPlainTextEdit& edit, const QString& text)
{
    edit.moveCursor(QTextCursor::End);
    QTextCursor cursor = edit.textCursor();
    QTextCharFormat format = edit.currentCharFormat();
    const QBrush foreground = format.foreground();
    format.setForeground(QBrush(Qt::blue));
    cursor.setCharFormat(format);
    edit.setTextCursor(cursor);
    edit.insertPlainText(text);
    format.setForeground(foreground);
    edit.setCurrentCharFormat(format);
    edit.insertPlainText("\n");
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

    // Where the character after a position begins.
    QPoint point_of(int position)
    {
        return area.cursorRect(cursor_at(area, position, position)).center() + QPoint(1, 0);
    }
    void mouse(QEvent::Type type, const QPoint& point, Qt::MouseButtons buttons = Qt::LeftButton)
    {
        const QPoint on_screen = area.viewport()->mapToGlobal(point);
        QMouseEvent event(type, point, point, on_screen, Qt::LeftButton, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(area.viewport(), &event);
    }
    ReceiveArea area;
};

} // namespace

TEST_F(Area, HoldsWhatAStockWidgetHoldsAndWrapsItAsASlowReference)
{
    for (unsigned seed = 1; seed <= 6; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
        QPlainTextEdit stock;
        stock.setUndoRedoEnabled(false);
        area.clear();
        area.document()->setMaximumBlockCount(0);
        for (int step = 0; step < 150; ++step) {
            SCOPED_TRACE(QString("seed %1 step %2").arg(seed).arg(step).toStdString());
            const int kind = below(20);
            const int end = stock.document()->characterCount() - 1;
            const int anchor = below(end + 1), position = below(end + 1), count = below(300);
            const int most_lines = below(2) * below(20);
            const QString text = random_text(random, below(400), seed % 2 == 0 && below(2) == 0);
            const QString prefix = below(3) == 0 ? "\n[12:00:00.000] " : "";
            for (QPlainTextEdit* edit : {static_cast<QPlainTextEdit*>(&area), &stock}) {
                if (kind == 0)
                    edit->document()->setMaximumBlockCount(most_lines);
                else if (kind == 1)
                    edit->setTextCursor(cursor_at(*edit, anchor, position));
                else if (kind == 2 && step % 5 == 0)
                    edit->clear();
                else if (kind == 3)
                    cursor_at(*edit, 0, qMin(end, count)).removeSelectedText();
                else if (kind == 4)
                    cursor_at(*edit, qMax(0, end - count), end).removeSelectedText();
                else if (kind == 5)
                    cursor_at(*edit, anchor, qMin(end, anchor + count)).insertText(text);
            }
            if (kind == 6)
                area.resize(40 + below(500), 100 + below(300));
            if (kind >= 7 && kind < 10) {
                area.append_line(prefix + text, QBrush(Qt::blue));
                stock_append_line(stock, prefix + text);
            }
            if (kind >= 10) {
                const int last_paragraph = stock.document()->lastBlock().length() - 1;
                const int replaced = kind < 14 ? qMin(below(4), last_paragraph) : 0;
                area.append_chunk(prefix, text, replaced);
                const int now = stock.document()->characterCount() - 1;
                cursor_at(stock, now - replaced, now).removeSelectedText();
                stock_append(stock, prefix + text);
                ASSERT_EQ(bar().value(), bar().maximum());
            }

            ASSERT_EQ(area.toPlainText(), stock.toPlainText());
            ASSERT_EQ(area.blockCount(), stock.blockCount());
            ASSERT_EQ(colours_of(area), colours_of(stock));
            ASSERT_EQ(area.textCursor().position(), stock.textCursor().position());
            ASSERT_EQ(area.textCursor().anchor(), stock.textCursor().anchor());
            const QString all = text_of(area);
            const std::vector<SlowRow> rows = slow_rows(all, area.columns());
            for (size_t row = 0; row < rows.size(); ++row)
                ASSERT_EQ(area.row_text(int(row)),
                          all.mid(rows[row].start, rows[row].end - rows[row].start));
            ASSERT_EQ(bar().maximum(), qMax(0, int(rows.size()) - area.visible_rows()));
        }
        area.grab(); // what it holds can be painted
    }
}

TEST_F(Area, PaintsEachCharacterInItsCell)
{
    std::mt19937 random(3);
    const QString characters = QString("#W  \t") + QChar(0x56FD);
    QString text(100, '#');
    for (int i = 0; i < 1500; ++i)
        text += characters[int(random() % unsigned(characters.size()))];
    append(text);
    const auto place_of = [&](int at) { return area.cursorRect(cursor_at(area, at, at)); };
    for (const int width : {90, 237, 400}) {
        area.resize(width, 300);
        bar().setValue(2);
        const QImage image = area.viewport()->grab().toImage();
        const int cell = place_of(1).x() - place_of(0).x();
        EXPECT_NEAR(area.columns() * cell, area.viewport()->width(), 3 * cell);
        for (int at = 0; at < text.size(); ++at) {
            const QRect place = place_of(at).adjusted(cell / 4, 0, cell / 2, 0);
            const bool has_ink = text[at] != ' ' && text[at] != '\t';
            const bool is_wide = text[at].unicode() == 0x56FD;
            for (const QRect& part : {place, place.translated(is_wide ? cell : 0, 0)}) {
                if (!image.rect().contains(part))
                    continue;
                QImage blank(part.size(), image.format());
                blank.fill(area.palette().base().color());
                ASSERT_EQ(image.copy(part) != blank, has_ink) << at << " at width " << width;
            }
        }
    }
}

TEST_F(Area, CopiesExactlyWhatADragSelects)
{
    std::mt19937 random(5);
    QString text;
    while (text.size() < 400)
        text += random() % 30 == 0 ? QChar('\n')
                                   : QChar(random() % 9 == 0 ? 0x56FD : 'a' + int(random() % 26));
    append(text);
    bar().setValue(0);
    for (int at = 0; at < 300; ++at) {
        const QPoint point = point_of(at);
        if (text[at] != '\n' && point_of(at + 1).y() > point.y()) {
            // After a row that goes on, its last character is meant.
            ASSERT_EQ(area.cursorForPosition(point + QPoint(5, 0)).position(), at);
        }
    }
    for (int i = 0; i < 60; ++i) {
        const int from = int(random() % 300);
        const int to = (from + 1 + int(random() % 299)) % 300;
        area.setTextCursor(cursor_at(area, 0, 0));
        mouse(QEvent::MouseButtonPress, point_of(from));
        const QPoint near_to = point_of(to) - QPoint(i % 2 * 3, 0);
        mouse(QEvent::MouseMove, near_to);
        mouse(QEvent::MouseButtonRelease, near_to, Qt::NoButton);
        ASSERT_EQ(area.textCursor().anchor(), from);
        ASSERT_EQ(area.textCursor().position(), to);
        area.copy();
        ASSERT_EQ(QApplication::clipboard()->text(), text.mid(qMin(from, to), qAbs(to - from)));
    }
}

TEST_F(Area, SelectsWordsAndParagraphsAsAStockWidget)
{
    QApplication::setDoubleClickInterval(10000); // however slow the machine
    const QString text =
        QString("  one  foo_bar 12.5,(x)\nsecond line; can't 50%1\n\n "
                "a.b?c!d@e#f$g:h-i<j>k[l]m{n}o=p/q+r%s&t^u*v\"w`x~y|z\\ \t%2 last ")
            .arg(QChar(0xB0))
            .arg(QChar(0x56FD));
    QPlainTextEdit stock(text);
    stock.setFont(area.font());
    stock.resize(800, 300);
    stock.show();
    area.resize(800, 300);
    append(text);
    const auto selections_match = [&] {
        return area.textCursor().selectedText() == stock.textCursor().selectedText();
    };
    for (int position = 0; position < text.size(); ++position) {
        SCOPED_TRACE(position);
        const QPoint in_stock =
            stock.cursorRect(cursor_at(stock, position, position)).center() + QPoint(2, 0);
        QTest::mouseDClick(stock.viewport(), Qt::LeftButton, {}, in_stock);
        mouse(QEvent::MouseButtonDblClick, point_of(position));
        EXPECT_TRUE(selections_match()) << "a word";
        QTest::mouseClick(stock.viewport(), Qt::LeftButton, {}, in_stock);
        mouse(QEvent::MouseButtonPress, point_of(position));
        mouse(QEvent::MouseButtonRelease, point_of(position), Qt::NoButton);
        EXPECT_TRUE(selections_match()) << "a paragraph";
        stock.setTextCursor(cursor_at(stock, 0, 0));
        area.setTextCursor(cursor_at(area, 0, 0));
    }
}

TEST_F(Area, ScrollsWhileADragIsPastItsEdge)
{
    append(QString("line\n").repeated(200));
    bar().setValue(50);
    mouse(QEvent::MouseButtonPress, QPoint(20, 100));
    mouse(QEvent::MouseMove, QPoint(20, -300));
    EXPECT_TRUE(wait_until([&] { return bar().value() == 0; }));
    EXPECT_LT(area.textCursor().position(), 5) << "not in the first line";
    mouse(QEvent::MouseMove, QPoint(20, area.viewport()->height() + 300));
    EXPECT_TRUE(wait_until([&] { return bar().value() == bar().maximum(); }));
    mouse(QEvent::MouseButtonRelease, QPoint(20, 0), Qt::NoButton);
    EXPECT_TRUE(area.textCursor().hasSelection());
}

TEST_F(Area, KeepsTheReadersPlaceUntilTheNextChunk)
{
    append("old\n" + QString("some words in a row ").repeated(2000));
    QCoreApplication::processEvents(); // the scroll bar takes its place
    bar().setValue(100);
    area.document()->setMaximumBlockCount(1);
    QCoreApplication::processEvents();
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

TEST_F(Area, SelectsAllByKeyAndCopiesALongText)
{
    append((QString(QChar(0x2028)) + "a" + QChar(0xA0) + "b\n").repeated(300000));
    QTest::keyClick(&area, Qt::Key_A, Qt::ControlModifier);
    area.copy();
    EXPECT_TRUE(QApplication::clipboard()->text() == area.toPlainText());
}

TEST_F(Area, PaintsAtMostOnceAFrameAndTheLastChangeToo)
{
    struct Watch : QObject
    {
        int paints = 0;
        bool eventFilter(QObject* /*watched*/, QEvent* event) override
        {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } watch;
    area.viewport()->installEventFilter(&watch);
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 10 * FramePacer::FRAME_MS) {
        append("chunk ");
        QCoreApplication::processEvents();
    }
    EXPECT_LE(watch.paints, clock.elapsed() / FramePacer::FRAME_MS + 1);
    const int before = watch.paints;
    append("last");
    EXPECT_TRUE(wait_until([&] { return watch.paints > before; }));
}
