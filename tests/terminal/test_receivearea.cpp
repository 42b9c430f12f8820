#include "receivearea.h"

#include "framepacer.h"
#include "print.h"
#include "slowrows.h"
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

// "position+length:colour" of each run of a colour.
QStringList colours_of(const QPlainTextEdit& edit)
{
    QStringList runs;
    for (QTextBlock block = edit.document()->begin(); block.isValid(); block = block.next())
        for (auto it = block.begin(); !it.atEnd(); ++it)
            runs += QString("%1+%2:%3")
                        .arg(it.fragment().position())
                        .arg(it.fragment().length())
                        .arg(it.fragment().charFormat().foreground().color().name());
    return runs;
}

QTextCursor cursor_at(const QPlainTextEdit& edit, int anchor, int position)
{
    QTextCursor cursor(edit.document());
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    return cursor;
}

// How a chunk is shown in a stock widget.
void stock_append(QPlainTextEdit& edit, const QString& prefix, const QString& text)
{
    QTextCursor cursor = edit.textCursor();
    cursor.movePosition(QTextCursor::End);
    edit.setTextCursor(cursor);
    if (!prefix.isEmpty())
        edit.insertPlainText(prefix);
    edit.insertPlainText(text);
    cursor.movePosition(QTextCursor::End);
    edit.setTextCursor(cursor);
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

QByteArray random_bytes(std::mt19937& random)
{
    static const QByteArray PIECES[] = {"abc",
                                        " ",
                                        "\t",
                                        "\n",
                                        "\r\n",
                                        "\r",
                                        "\xE5\x9B\xBD",
                                        "\xC3\xA9",
                                        "e\xCC\x81",
                                        "\xFF",
                                        "\xC3",
                                        "\xF0\x9F\x98\x80",
                                        "\x01",
                                        "\xE2\x80\xA8",
                                        "\xE2\x80\xA9",
                                        "\xEF\xB7\x90",
                                        QByteArray(70, 'x'),
                                        "41 0D FF "};
    QByteArray bytes;
    for (unsigned count = random() % 30; count > 0; --count)
        bytes += PIECES[random() % std::size(PIECES)];
    return bytes;
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

    void append(const QString& text) { area.append_chunk(QString(), text); }
    QScrollBar& bar() { return *area.verticalScrollBar(); }
    QString selected() { return area.textCursor().selectedText().replace(QChar(0x2029), '\n'); }

    // Where the character behind a position begins.
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
    void drag(const QPoint& from, const QPoint& to)
    {
        mouse(QEvent::MouseButtonPress, from);
        mouse(QEvent::MouseMove, to);
        mouse(QEvent::MouseButtonRelease, to, Qt::NoButton);
    }

    ReceiveArea area;
};

// Counts what reaches a layout through the functions that the area overrides.
class ProbeLayout : public QPlainTextDocumentLayout
{
public:
    using QPlainTextDocumentLayout::QPlainTextDocumentLayout;

    QRectF blockBoundingRect(const QTextBlock& block) const override
    {
        ++asked;
        return lays_out ? QPlainTextDocumentLayout::blockBoundingRect(block) : QRectF();
    }

    mutable int asked = 0;
    int changes = 0;
    bool lays_out = false;

protected:
    void documentChanged(int /*from*/, int /*removed*/, int /*added*/) override { ++changes; }
};

} // namespace

TEST_F(Area, HoldsWhatAStockWidgetHoldsAndWrapsItAsASlowReference)
{
    for (unsigned seed = 1; seed <= 4; ++seed) {
        std::mt19937 random(seed);
        QPlainTextEdit stock;
        stock.setUndoRedoEnabled(false);
        area.clear();
        area.document()->setMaximumBlockCount(0);
        for (int step = 0; step < 150; ++step) {
            const unsigned kind = random() % 16;
            const int length = stock.document()->characterCount();
            const int anchor = int(random() % unsigned(length));
            const int position = int(random() % unsigned(length));
            const int most_lines = random() % 2 == 0 ? 0 : 1 + int(random() % 20);
            const QByteArray bytes = random_bytes(random);
            const QString prefix = random() % 3 == 0 ? "\n[12:00:00.000] " : "";
            for (QPlainTextEdit* edit : {static_cast<QPlainTextEdit*>(&area), &stock}) {
                if (kind == 0)
                    edit->document()->setMaximumBlockCount(most_lines);
                else if (kind == 1)
                    edit->setTextCursor(cursor_at(*edit, anchor, position));
                else if (kind == 2 && step % 5 == 0)
                    edit->clear();
            }
            const QString text = QString::fromUtf8(bytes);
            if (kind >= 3 && kind < 6) {
                area.append_line(prefix + text, QBrush(Qt::blue));
                stock_append_line(stock, prefix + text);
            }
            if (kind >= 6) {
                area.append_chunk(prefix, text);
                stock_append(stock, prefix, text);
                ASSERT_EQ(bar().value(), bar().maximum());
            }
            if (kind == 6)
                area.resize(40 + int(random() % 500), 100 + int(random() % 300));

            const std::string where = QString("seed %1 step %2").arg(seed).arg(step).toStdString();
            ASSERT_EQ(area.toPlainText(), stock.toPlainText()) << where;
            ASSERT_EQ(area.blockCount(), stock.blockCount()) << where;
            ASSERT_EQ(colours_of(area), colours_of(stock)) << where;
            ASSERT_EQ(area.textCursor().position(), stock.textCursor().position()) << where;
            ASSERT_EQ(area.textCursor().anchor(), stock.textCursor().anchor()) << where;
            const QString all = text_of(area);
            int row = 0;
            for (const SlowRow& wanted : slow_rows(all, area.columns()))
                ASSERT_EQ(area.row_text(row++), all.mid(wanted.start, wanted.end - wanted.start))
                    << where << ", row " << row - 1;
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
    for (const int width : {90, 237, 400}) {
        area.resize(width, 300);
        bar().setValue(2);
        const QImage image = area.viewport()->grab().toImage();
        const int middle = area.columns() / 2;
        const QRect first = area.cursorRect(cursor_at(area, 0, 0));
        const QRect other = area.cursorRect(cursor_at(area, 0, middle));
        const double cell = double(other.x() - first.x()) / middle;
        const std::vector<SlowRow> rows = slow_rows(text, area.columns());
        for (int line = 0; line + 1 < area.visible_rows(); ++line) {
            const SlowRow row = rows[size_t(line + 2)];
            QString ink(area.columns(), ' ');
            for (int at = row.start; at < row.end; ++at) {
                const SlowKind kind = slow_kind(text, at);
                const int column = slow_column(text, row.start, at, area.columns());
                if (kind == SlowKind::narrow)
                    ink.replace(column, 1, "#");
                else if (kind == SlowKind::wide)
                    ink.replace(column, 2, "##");
            }
            QString found;
            for (int column = 0; column < area.columns(); ++column) {
                const int left = qRound(first.x() + (column + 0.25) * cell);
                const QImage part = image.copy(left, first.y() + (line + 2) * first.height(),
                                               qMax(2, int(cell / 2)), first.height());
                QImage blank(part.size(), part.format());
                blank.fill(area.palette().base().color());
                found += part == blank ? ' ' : '#';
            }
            ASSERT_EQ(found, ink) << "line " << line << " at width " << width;
        }
    }
}

TEST_F(Area, CopiesExactlyWhatADragSelects)
{
    std::mt19937 random(5);
    QString text;
    while (text.size() < 400)
        text += random() % 30 == 0
                    ? QString("\n")
                    : QString(QChar(random() % 9 == 0 ? 0x56FD : 'a' + int(random() % 26)));
    append(text);
    bar().setValue(0);
    for (int i = 0; i < 60; ++i) {
        const int from = int(random() % 300);
        const int to = int(random() % 300);
        area.setTextCursor(cursor_at(area, 0, 0));
        drag(point_of(from), point_of(to));
        ASSERT_EQ(area.textCursor().anchor(), from);
        ASSERT_EQ(area.textCursor().position(), to);
        if (from == to)
            continue;
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
    for (int position = 0; position < text.size(); ++position) {
        const QPoint in_stock =
            stock.cursorRect(cursor_at(stock, position, position)).center() + QPoint(2, 0);
        QTest::mouseDClick(stock.viewport(), Qt::LeftButton, {}, in_stock);
        mouse(QEvent::MouseButtonDblClick, point_of(position));
        EXPECT_EQ(selected(), stock.textCursor().selectedText().replace(QChar(0x2029), '\n'))
            << "word at " << position;
        QTest::mousePress(stock.viewport(), Qt::LeftButton, {}, in_stock);
        mouse(QEvent::MouseButtonPress, point_of(position));
        EXPECT_EQ(selected(), stock.textCursor().selectedText().replace(QChar(0x2029), '\n'))
            << "paragraph at " << position;
        QTest::mouseRelease(stock.viewport(), Qt::LeftButton, {}, in_stock);
        mouse(QEvent::MouseButtonRelease, point_of(position), Qt::NoButton);
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
    append(QString("some words in a row ").repeated(2000));
    QCoreApplication::processEvents(); // the scroll bar takes its place
    bar().setValue(100);
    const QString top = area.row_text(100);
    area.document()->setMaximumBlockCount(50);
    QCoreApplication::processEvents();
    EXPECT_EQ(bar().value(), 100);
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
    const QString text = (QString(QChar(0x2028)) + "a" + QChar(0xA0) + "b\n").repeated(300000);
    append(text);
    QTest::keyClick(&area, Qt::Key_A, Qt::ControlModifier);
    area.copy();
    EXPECT_TRUE(QApplication::clipboard()->text() == area.toPlainText());
}

TEST_F(Area, TurnsPagesByKeysAndWheel)
{
    append(QString("line\n").repeated(200));
    const int end = bar().maximum();
    QTest::keyClick(&area, Qt::Key_PageUp);
    EXPECT_EQ(bar().value(), end - area.visible_rows());
    QTest::keyClick(&area, Qt::Key_PageDown);
    EXPECT_EQ(bar().value(), end);
    QWheelEvent wheel(QPointF(9, 9), QPointF(9, 9), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(area.viewport(), &wheel);
    EXPECT_EQ(bar().value(), end - QApplication::wheelScrollLines());
}

TEST_F(Area, StartsOverAfterAClear)
{
    append(QString("line\n").repeated(200));
    area.clear();
    EXPECT_EQ(bar().maximum(), 0);
    append("new");
    EXPECT_EQ(area.row_text(0), "new");
}

TEST_F(Area, PaintsAtMostOnceAFrame)
{
    class Watch : public QObject
    {
    public:
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
    EXPECT_TRUE(wait_until([&] { return watch.paints > before; })) << "the last change isn't shown";
}

TEST_F(Area, IsNeverLaidOutByTheToolkit)
{
    append(QString("text without an end ").repeated(500));
    area.append_line("sent", QBrush(Qt::blue));
    area.setTextCursor(cursor_at(area, 7, 9000));
    area.grab();
    QTest::keyClick(&area, Qt::Key_PageUp);
    mouse(QEvent::MouseButtonDblClick, QPoint(30, 30));
    area.resize(500, 200);
    area.setFont(QFont("monospace", 15));
    for (QTextBlock block = area.document()->begin(); block.isValid(); block = block.next())
        EXPECT_EQ(block.layout()->lineCount(), 0);
}

// What the area relies on in Qt, each by itself.

TEST(Toolkit, ReachesTheLayoutThroughVirtualFunctions)
{
    QPlainTextEdit edit;
    auto* const probe = new ProbeLayout(edit.document());
    edit.document()->setDocumentLayout(probe);
    edit.setDocument(edit.document());
    edit.insertPlainText("text");
    EXPECT_GT(probe->changes, 0);
    EXPECT_GT(probe->asked, 0);
    EXPECT_EQ(edit.document()->begin().layout()->lineCount(), 0);
}

TEST(Toolkit, AsksForLinesOutsideEditBlocksOnly)
{
    QTextDocument document;
    auto* const probe = new ProbeLayout(&document);
    document.setDocumentLayout(probe);
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    cursor.insertText("te\nxt");
    cursor.setPosition(0);
    cursor.setPosition(5, QTextCursor::KeepAnchor);
    EXPECT_EQ(probe->asked, 0);
    cursor.endEditBlock();
    cursor.movePosition(QTextCursor::End);
    cursor.insertText("more");
    EXPECT_GT(probe->asked, 0);
    EXPECT_EQ(document.toPlainText(), "te\nxtmore") << "it doesn't make do with no lines";
}

TEST(Toolkit, MovesACursorAtTheEndAlong)
{
    QTextDocument document("text");
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    QTextCursor(cursor).insertText("more");
    EXPECT_EQ(cursor.position(), 8);
    EXPECT_FALSE(cursor.hasSelection());
}

TEST_F(Area, IsReachedByTheStockSetTextCursorAndScrollsThere)
{
    append(QString("line\n").repeated(200));
    QPlainTextEdit& edit = area;
    edit.setTextCursor(cursor_at(area, 10 * 5, 10 * 5));
    EXPECT_EQ(bar().value(), 10);
    area.viewport()->update();
    edit.ensureCursorVisible();
    EXPECT_EQ(bar().value(), 10) << "the stock widget scrolls by itself";
}

TEST_F(Area, CanSwapTheEngineOfATextLayout)
{
    append("text");
    QTextLayout* const layout = area.document()->begin().layout();
    layout->setCacheEnabled(true);
    {
        const EmptyLayouts empty(area.document(), {0, 2, 4});
        EXPECT_FALSE(layout->cacheEnabled());
    }
    EXPECT_TRUE(layout->cacheEnabled());
}
