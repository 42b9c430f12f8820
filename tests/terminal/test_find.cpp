#include "checksum/hashselectdialog.h"
#include "linkcfg/qlinkcfgdlg.h"
#include "terminal/findbar.h"
#include "terminal/receivearea.h"
#include "windowtest.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolButton>
#include <QWheelEvent>
#include <random>

TEST(TextSearch, KnowsTheHitsOfASlowSearchWhateverHappensToTheText)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
        const auto random_text = [&](int length) {
            QString text;
            for (int i = 0; i < length; ++i)
                text += QString("aab\nA")[below(seed % 4 == 0 ? 2 : 5)];
            return text;
        };
        const auto sensitivity = seed % 2 == 0 ? Qt::CaseSensitive : Qt::CaseInsensitive;
        const QString wanted = random_text(1 + below(4)).replace('\n', 'b');
        QString text = random_text(below(3) * TextSearch::PAGE);
        TextSearch search(wanted, sensitivity,
                          [&](int from, int to) { return text.mid(from, to - from); });
        for (int step = 0; step < 30; ++step) {
            SCOPED_TRACE(QString("seed %1 step %2").arg(seed).arg(step).toStdString());
            const int length = text.size();
            const int kind = below(10), part = below(below(2) == 0 ? 20 : length + 1);
            const int count = qMin(length, part);
            if (kind < 5) {
                search.forget_from(length); // as an insertion is announced
                text += random_text(below(TextSearch::PAGE));
            } else if (kind < 7) {
                text.remove(0, count);
                search.drop_front(count);
            } else if (kind < 9) {
                text = text.left(length - count) + random_text(below(3));
                search.forget_from(length - count);
            }
            for (int pages = below(4); pages > 0; --pages)
                search.search_a_page(text.size());
            if (below(2) == 0)
                continue;
            while (search.search_a_page(text.size()))
                continue;
            std::vector<int> slow;
            for (int at = text.indexOf(wanted, 0, sensitivity); at >= 0;
                 at = text.indexOf(wanted, at + 1, sensitivity))
                slow.push_back(at);
            ASSERT_EQ(search.count(), int(slow.size()));
            ASSERT_EQ(search.hits(0, text.size()), slow);
            const int here = below(text.size() + 1);
            const auto after = std::lower_bound(slow.begin(), slow.end(), here);
            ASSERT_EQ(search.first_from(here), after == slow.end() ? -1 : *after);
            ASSERT_EQ(search.last_before(here), after == slow.begin() ? -1 : *(after - 1));
            ASSERT_EQ(search.count_before(here), int(after - slow.begin()));
        }
    }
}

class Comforts : public WindowTest
{
protected:
    ReceiveArea* area() const { return find<ReceiveArea>("plainTextEdit_recv"); }
    int top_row() const { return area()->verticalScrollBar()->value(); }
    void show(const QString& text) const { area()->append_chunk(QString(), text); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        activate();
        QTest::keyClick(window->focusWidget(), key, modifiers);
    }
    bool counts(const QString& text) const
    {
        const auto* const label = find<QLabel>("findCount");
        if (wait_until([&] { return label->text() == text; }, 5000))
            return true;
        ADD_FAILURE() << "it counts " << qPrintable(label->text());
        return false;
    }
    void look_for(const QString& text) const
    {
        key(Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(window->focusWidget(), text);
    }
    // Of the whole visible area.
    int pixels(QRgb color) const
    {
        const QImage image = area()->viewport()->grab().toImage();
        int found = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                found += image.pixel(x, y) == color ? 1 : 0;
        return found;
    }
    // Keys of a window work while it is the active one, which a dialog before it was.
    void activate() const
    {
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
};

TEST_F(Comforts, FindStepsThroughTheHitsAndGivesTheFocusBack)
{
    window_start();
    for (int i = 0; i < 300; ++i)
        show(i % 100 == 50 ? "an Apple\n" : "a line\n");
    look_for("apple");
    EXPECT_TRUE(counts("3 of 3")) << "the nearest to what is in sight";
    struct Step
    {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        const char* count;
    };
    for (const Step& step : {Step{Qt::Key_Return, {}, "1 of 3"}, Step{Qt::Key_F3, {}, "2 of 3"},
                             Step{Qt::Key_Enter, Qt::KeypadModifier, "3 of 3"},
                             Step{Qt::Key_F3, Qt::ShiftModifier, "2 of 3"},
                             Step{Qt::Key_Return, Qt::ShiftModifier, "1 of 3"},
                             Step{Qt::Key_F3, Qt::ShiftModifier, "3 of 3"}}) {
        key(step.key, step.modifiers);
        EXPECT_TRUE(counts(step.count));
        const int row = 100 * (step.count[0] - '1') + 50;
        EXPECT_LE(top_row(), row) << step.count;
        EXPECT_LT(row, top_row() + area()->visible_rows()) << step.count;
    }
    find<QToolButton>("findCase")->click();
    EXPECT_TRUE(counts("not found"));
    key(Qt::Key_Escape);
    EXPECT_FALSE(find<FindBar>("findBar")->isVisible());
    EXPECT_EQ(window->focusWidget(), find<QWidget>("plainTextEdit_send"));
}

TEST_F(Comforts, FindFollowsTextThatComesAndGoes)
{
    window_start();
    ASSERT_TRUE(port_open());
    ASSERT_TRUE(receive("one hit\nno\n", 11));
    look_for("hit");
    EXPECT_TRUE(counts("1 of 1"));
    ASSERT_TRUE(receive("two hi", 17));
    ASSERT_TRUE(receive("ts, hit", 24));
    EXPECT_TRUE(counts("1 of 3"));
    set("spinBox_auto_clr_threshold", 5);
    check("checkBox_window_auto_clr");
    ASSERT_TRUE(receive("\n\n\n\n", 28));
    EXPECT_TRUE(counts("2 found")) << "the current one is gone";
    click("pushButton_recv_clr");
    EXPECT_TRUE(counts("not found"));
    ASSERT_TRUE(receive("hit", 3));
    EXPECT_TRUE(counts("1 found"));
}

TEST_F(Comforts, FindPaintsEveryHitInSightAndTheCurrentOneApart)
{
    constexpr QRgb HIT = 0xFFFFE46B, CURRENT = 0xFFFF9D3C;
    window_start();
    window->resize(600, 600);
    show("..  ..\nno\n.. .. ..");
    look_for("..");
    EXPECT_TRUE(counts("1 of 5"));
    const int one = pixels(CURRENT);
    EXPECT_GT(one, 0);
    EXPECT_NEAR(double(pixels(HIT)) / one, 4, 0.3); // the dots take some, by where they fall
    const QRect text = area()->viewport()->geometry();
    EXPECT_GE(text.top(), find<FindBar>("findBar")->geometry().bottom()) << "the bar hides text";
    area()->document()->setMaximumBlockCount(1);
    EXPECT_TRUE(counts("3 found"));
    EXPECT_EQ(pixels(CURRENT), 0) << "its line is gone";
    key(Qt::Key_Escape);
    EXPECT_EQ(pixels(HIT) + pixels(CURRENT), 0);
}

TEST_F(Comforts, CtrlReturnSendsAsTheButtonDoes)
{
    window_start();
    type("ping");
    key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(answers.boxes, QStringList()) << "the button is disabled";
    ASSERT_TRUE(port_open());
    key(Qt::Key_Return, Qt::ControlModifier);
    key(Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_EQ(counters(), "CNT: 2 TX: 8 RX: 0");
    EXPECT_EQ(typed(), "ping");
}

TEST_F(Comforts, KeysAndWheelChangeTheFontWithinBoundsAndScroll)
{
    window_start();
    const auto size = [this] { return area()->font().pointSizeF(); };
    const qreal first = size();
    const auto wheel = [this](int angle) {
        const QPoint at(5, 5);
        QWheelEvent event(at, area()->viewport()->mapToGlobal(at), {}, {0, angle}, Qt::NoButton,
                          Qt::ControlModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(area()->viewport(), &event);
    };
    key(Qt::Key_Plus, Qt::ControlModifier);
    wheel(60);
    EXPECT_EQ(size(), first + 1) << "half a step";
    wheel(60);
    EXPECT_EQ(size(), first + 2);
    key(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(size(), first + 1);
    for (const int angle : {12000, -12000}) {
        wheel(angle);
        const qreal most = size();
        wheel(angle);
        EXPECT_EQ(size(), most);
        EXPECT_EQ(most, angle > 0 ? 48 : 5);
    }
    key(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(size(), first);

    show(QString("line\n").repeated(300));
    area()->setFocus();
    const int end = area()->verticalScrollBar()->maximum();
    for (const auto& modifiers : {Qt::NoModifier, Qt::ControlModifier}) {
        key(Qt::Key_Home, modifiers);
        EXPECT_EQ(top_row(), 0);
        key(Qt::Key_End, modifiers);
        EXPECT_EQ(top_row(), end);
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
    for (const char* const language : {"en_US", "zh_CN"}) {
        configure("global/language", language);
        window_start();
        look_for("x");
        const QStringList names = spoken_names(*window);
        EXPECT_GT(names.size(), 30);
        for (int i = 0; i < english.size(); ++i)
            EXPECT_NE(names.value(i), english[i]) << "not translated";
        english = names;
        window_end();
    }
    spoken_names(QLinkCfgDlg(nullptr, "tarnwick.ini"));
    spoken_names(HashSelectDialog(QByteArray("x"), nullptr));
}
