#include "checksum/hashselectdialog.h"
#include "linkcfg/qlinkcfgdlg.h"
#include "terminal/receivearea.h"
#include "windowtest.h"

#include <QAccessible>
#include <QMenu>
#include <QScrollBar>
#include <QToolButton>
#include <QWheelEvent>

namespace {

class Comforts : public OpenWindowTest
{
protected:
    ReceiveArea* area() const { return find<ReceiveArea>("plainTextEdit_recv"); }
    int top_row() const { return area()->verticalScrollBar()->value(); }
    void show(const QString& text) const { area()->append_chunk(QString(), text); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        // Keys of a window work while it is the active one, which a dialog before it was.
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window->focusWidget(), key, modifiers);
    }
    void look_for(const QString& text) const
    {
        key(Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(window->focusWidget(), text);
    }
    void expect_count(const QString& text) const
    {
        const auto* const label = find<QLabel>("findCount");
        EXPECT_TRUE(wait_until([&] { return label->text() == text; }))
            << qPrintable(label->text()) << " and not " << qPrintable(text);
    }
    // Of the whole visible area.
    qint64 pixels(QRgb color) const
    {
        const QImage image =
            area()->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const auto* const first = reinterpret_cast<const QRgb*>(image.constBits());
        return std::count(first, first + image.width() * image.height(), color);
    }
};

} // namespace

TEST_F(Comforts, FindStepsThroughTheHitsAndGivesTheFocusBack)
{
    for (int i = 0; i < 300; ++i)
        show(i % 100 == 50 ? "an Apple\n" : "a line\n");
    find<QWidget>("plainTextEdit_send")->setFocus();
    look_for("apple");
    expect_count("3 of 3"); // the nearest to what is in sight
    const std::tuple<Qt::Key, Qt::KeyboardModifiers, int> steps[] = {
        {Qt::Key_Return, Qt::NoModifier, 1},    {Qt::Key_F3, Qt::NoModifier, 2},
        {Qt::Key_Enter, Qt::KeypadModifier, 3}, {Qt::Key_F3, Qt::ShiftModifier, 2},
        {Qt::Key_Return, Qt::ShiftModifier, 1}, {Qt::Key_F3, Qt::ShiftModifier, 3}};
    for (const auto& [step, modifiers, hit] : steps) {
        key(step, modifiers);
        expect_count(QString("%1 of 3").arg(hit));
        const int below_top = 100 * hit - 50 - top_row();
        EXPECT_TRUE(0 <= below_top && below_top < area()->visible_rows()) << hit;
    }
    find<QToolButton>("findCase")->click();
    expect_count("not found");
    key(Qt::Key_Escape);
    EXPECT_FALSE(find<QWidget>("findBar")->isVisible());
    EXPECT_EQ(window->focusWidget(), find<QWidget>("plainTextEdit_send"));
}

TEST_F(Comforts, FindFollowsTextThatComesAndGoes)
{
    ASSERT_TRUE(receive("one hit\nno\n", 11));
    look_for("hit");
    expect_count("1 of 1");
    ASSERT_TRUE(receive("two hi", 17));
    ASSERT_TRUE(receive("ts, hit", 24));
    expect_count("1 of 3");
    set("spinBox_auto_clr_threshold", 5);
    check("checkBox_window_auto_clr");
    ASSERT_TRUE(receive("\n\n\n\n", 28));
    expect_count("2 found"); // the current one is gone
    click("pushButton_recv_clr");
    expect_count("not found");
    ASSERT_TRUE(receive("hit", 3));
    expect_count("1 found");
}

TEST_F(Comforts, FindPaintsEveryHitInSightAndTheCurrentOneApart)
{
    constexpr QRgb HIT = 0xFFFFE46B, CURRENT = 0xFFFF9D3C;
    window->resize(600, 600);
    show("..  ..\nno\n.. .. ..");
    look_for("..");
    expect_count("1 of 5");
    const qint64 one = pixels(CURRENT);
    EXPECT_GT(one, 0);
    EXPECT_NEAR(double(pixels(HIT)) / double(one), 4, 0.3); // the dots take some
    const QRect text = area()->viewport()->geometry(), bar = find<QWidget>("findBar")->geometry();
    EXPECT_TRUE(area()->rect().contains(bar) && !text.intersects(bar)) << "the bar hides text";
    area()->document()->setMaximumBlockCount(1);
    expect_count("3 found");
    EXPECT_EQ(pixels(CURRENT), 0) << "its line is gone";
    key(Qt::Key_Escape);
    EXPECT_EQ(pixels(HIT) + pixels(CURRENT), 0);
}

TEST_F(Comforts, KeysSendOpenTheMenuAndScroll)
{
    type("ping");
    key(Qt::Key_Return, Qt::ControlModifier);
    key(Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
    click(OPEN);
    key(Qt::Key_Return, Qt::ControlModifier); // while the button is disabled
    EXPECT_EQ(counters() + typed(), "CNT: 2 TX: 8 RX: 0ping");
    EXPECT_TRUE(answers.boxes.isEmpty());
    key(Qt::Key_F10);
    EXPECT_TRUE(wait_until([this] { return find<QMenu>("menu_file")->isVisible(); }));
    find<QMenu>("menu_file")->close();
    show(QString("line\n").repeated(300));
    area()->setFocus();
    const int end = top_row();
    for (const auto& modifiers : {Qt::NoModifier, Qt::ControlModifier}) {
        key(Qt::Key_Home, modifiers);
        EXPECT_EQ(top_row(), 0);
        key(Qt::Key_End, modifiers);
        EXPECT_EQ(top_row(), end);
    }
}

TEST_F(Comforts, KeysAndWheelChangeTheFontWithinBounds)
{
    const qreal first = area()->font().pointSizeF();
    const std::tuple<int, Qt::Key, qreal> steps[] = {
        {0, Qt::Key_Plus, first + 1},  {60, Qt::Key(), first + 1}, {60, Qt::Key(), first + 2},
        {0, Qt::Key_Minus, first + 1}, {12000, Qt::Key(), 48},     {120, Qt::Key(), 48},
        {-12000, Qt::Key(), 5},        {-120, Qt::Key(), 5},       {0, Qt::Key_0, first}};
    for (const auto& [wheel, pressed, size] : steps) {
        const QPoint at(5, 5);
        QWheelEvent event(at, area()->viewport()->mapToGlobal(at), {}, {0, wheel}, Qt::NoButton,
                          Qt::ControlModifier, Qt::NoScrollPhase, false);
        if (pressed)
            key(pressed, Qt::ControlModifier);
        else
            QCoreApplication::sendEvent(area()->viewport(), &event);
        EXPECT_EQ(area()->font().pointSizeF(), size) << wheel;
    }
}

// Of what can have the focus.
static QStringList spoken_names(const QWidget& window)
{
    QStringList names;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->focusPolicy() == Qt::NoFocus || widget->focusProxy() != nullptr)
            continue;
        names += QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
        EXPECT_NE(names.last(), "") << qPrintable(widget->objectName());
    }
    return names;
}

TEST_F(Comforts, EveryWidgetHasANameForAScreenReader)
{
    QStringList english;
    for (const char* const language : {"none", "zh_CN"}) {
        window_end();
        configure("global/language", language);
        window_start();
        look_for("x");
        for (const QString& name : spoken_names(*window))
            EXPECT_FALSE(english.contains(name)) << qPrintable(name) << " is not translated";
        english = spoken_names(*window);
        EXPECT_GT(english.size(), 30);
    }
    spoken_names(QLinkCfgDlg(nullptr, INI));
    spoken_names(HashSelectDialog(QByteArray("x"), nullptr));
}
