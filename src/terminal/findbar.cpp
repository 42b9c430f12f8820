#include "terminal/findbar.h"

#include "terminal/framepacer.h"
#include "terminal/pacedlabel.h"
#include "terminal/receivearea.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>

namespace {

constexpr int TURN_MS = 4; // of searching, before the event loop goes on with the rest

// The application's, with everything set: a child inherits from its parent's font what its own
// leaves open, and the area's is another one.
QFont own_font()
{
    QFont font = QApplication::font();
    font.setFamily(font.family());
    font.setStyleHint(font.styleHint());
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF());
    else
        font.setPixelSize(font.pixelSize());
    return font;
}

// The bar's texts are the window's in the catalogues.
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(MainWindow)
};

} // namespace

FindBar::FindBar(ReceiveArea* searched)
    : QFrame(searched)
    , area(searched)
    , line(new QLineEdit)
    , count_label(new PacedLabel(QStringLiteral("00000 / 00000")))
    , case_button(button_create("findCase", QStringLiteral("Aa")))
    , previous_button(button_create("findPrevious", QString()))
    , next_button(button_create("findNext", QString()))
    , close_button(button_create("findClose", QStringLiteral("\u00D7")))
{
    hide();
    setObjectName("findBar");
    setAutoFillBackground(true);
    setFont(own_font());
    line->setObjectName("findText");
    line->setMaxLength(TextSearch::MOST_WANTED);
    count_label->setObjectName("findCount");
    case_button->setCheckable(true);
    previous_button->setArrowType(Qt::UpArrow);
    next_button->setArrowType(Qt::DownArrow);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(3, 2, 3, 2);
    row->setSpacing(3);
    row->addWidget(line, 1);
    for (QWidget* widget : std::initializer_list<QWidget*>{
             count_label, case_button, previous_button, next_button, close_button})
        row->addWidget(widget);
    retranslate();

    connect(line, &QLineEdit::textChanged, this, &FindBar::search_anew);
    connect(case_button, &QToolButton::toggled, this, &FindBar::search_anew);
    connect(previous_button, &QToolButton::clicked, this, &FindBar::find_previous);
    connect(next_button, &QToolButton::clicked, this, &FindBar::find_next);
    connect(close_button, &QToolButton::clicked, this, &FindBar::close_and_give_focus_back);
    connect(area, &ReceiveArea::front_dropped, this, &FindBar::front_dropped);
    connect(area, &ReceiveArea::text_changed, this, &FindBar::text_changed);
    area->viewport()->installEventFilter(this);
    area->installEventFilter(this);
}

QToolButton* FindBar::button_create(const char* name, const QString& text)
{
    auto* const button = new QToolButton;
    button->setObjectName(name);
    button->setText(text);
    button->setAutoRaise(true);
    return button;
}

void FindBar::retranslate()
{
    const auto name = [](QWidget* widget, const QString& text, const char* keys = "") {
        widget->setAccessibleName(text);
        widget->setToolTip(*keys != 0 ? text + " (" + keys + ")" : text);
    };
    line->setPlaceholderText(Text::tr("find"));
    name(line, Text::tr("text to find"));
    name(case_button, Text::tr("case sensitive"));
    name(previous_button, Text::tr("previous hit"), "Shift+F3");
    name(next_button, Text::tr("next hit"), "F3");
    name(close_button, Text::tr("close the find bar"), "Esc");
    show_count();
}

void FindBar::open()
{
    const QString selected = area->selected_line(TextSearch::MOST_WANTED);
    if (!selected.isEmpty())
        line->setText(selected);
    if (isHidden()) {
        focus_before = window()->focusWidget();
        place();
        show();
        search_anew();
    }
    line->setFocus(Qt::ShortcutFocusReason);
    line->selectAll();
}

void FindBar::close_and_give_focus_back()
{
    QWidget* const before = focus_before != nullptr ? focus_before.data() : area;
    if (isAncestorOf(window()->focusWidget()))
        before->setFocus(Qt::OtherFocusReason);
    hide();
}

void FindBar::hideEvent(QHideEvent* event)
{
    QFrame::hideEvent(event);
    if (!isHidden())
        return; // the window alone was hidden
    turn_timer.stop();
    search = TextSearch();
    area->mark_hits(nullptr);
    area->reserve_top(0);
}

// Over the top of the area, whose text begins below it.
void FindBar::place()
{
    area->reserve_top(sizeHint().height());
    const QRect text = area->viewport()->geometry();
    setGeometry(text.x(), text.y() - sizeHint().height(), text.width(), sizeHint().height());
}

bool FindBar::eventFilter(QObject* watched, QEvent* event)
{
    if (isHidden())
        return false;
    // The area itself isn't asked: it may be in its destructor.
    if (watched != area && event->type() == QEvent::Resize)
        place();
    const bool is_escape = watched == area && event->type() == QEvent::KeyPress &&
                           static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (is_escape)
        close_and_give_focus_back();
    return is_escape;
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        close_and_give_focus_back();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        go((event->modifiers() & Qt::ShiftModifier) != 0 ? Goal::Previous : Goal::Next);
        break;
    default:
        QFrame::keyPressEvent(event);
    }
}

void FindBar::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}

void FindBar::search_anew()
{
    search =
        TextSearch(line->text(), case_button->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive,
                   [this](int from, int to) { return area->text_between(from, to); });
    current = -1;
    area->mark_hits(&search);
    go(Goal::Nearest);
}

void FindBar::front_dropped(int count)
{
    if (isHidden())
        return;
    search.drop_front(count);
    set_current(current - count);
    if (!turn_timer.isActive())
        turn_timer.start(FramePacer::FRAME_MS, this);
}

void FindBar::text_changed(int from)
{
    if (isHidden())
        return;
    search.forget_from(from);
    if (current + search.wanted_length() > from)
        set_current(-1);
    if (!turn_timer.isActive())
        turn_timer.start(FramePacer::FRAME_MS, this);
}

void FindBar::find_next()
{
    if (isHidden())
        open();
    else
        go(Goal::Next);
}

void FindBar::find_previous()
{
    if (isHidden())
        open();
    else
        go(Goal::Previous);
}

void FindBar::go(Goal wanted)
{
    goal = wanted;
    reach_goal();
    turn_timer.start(0, this);
}

void FindBar::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != turn_timer.timerId()) {
        QFrame::timerEvent(event);
        return;
    }
    QElapsedTimer clock;
    clock.start();
    bool more = true;
    while (more && clock.elapsed() < TURN_MS)
        more = search.search_a_page(area->text_length());
    reach_goal();
    show_count();
    if (more)
        turn_timer.start(0, this);
    else
        turn_timer.stop();
}

void FindBar::reach_goal()
{
    if (goal == Goal::None)
        return;
    const bool complete = search.is_complete(area->text_length());
    const int hit = hit_at_goal(complete);
    if (hit < 0 && !complete)
        return;
    goal = Goal::None;
    set_current(hit);
    if (hit >= 0)
        area->show_span(hit, hit + search.wanted_length());
}

// Without a current hit, what is in sight is where next and previous start. Only a complete search
// knows that there is no hit on one side of it, and which the last one is.
int FindBar::hit_at_goal(bool complete) const
{
    const int here = current >= 0 ? current : area->first_position_in_sight();
    const bool backwards = goal == Goal::Previous;
    if (backwards && !complete && search.searched() < here)
        return -1;
    const int hit =
        backwards ? search.last_before(here) : search.first_from(current >= 0 ? here + 1 : here);
    if (hit >= 0 || !complete)
        return hit;
    if (goal == Goal::Nearest)
        return search.last_before(here);
    return backwards ? search.last_before(area->text_length()) : search.first_from(0);
}

void FindBar::set_current(int position)
{
    current = std::max(-1, position);
    area->mark_current_hit(current, current < 0 ? current : current + search.wanted_length());
}

void FindBar::show_count()
{
    const bool complete = search.is_complete(area->text_length());
    QString text;
    if (search.wanted_length() > 0) {
        if (search.count() == 0)
            text = complete ? Text::tr("not found") : QString();
        else if (current < 0)
            text = Text::tr("%1 found").arg(search.count());
        else
            text = Text::tr("%1 of %2").arg(search.count_before(current) + 1).arg(search.count());
        if (!complete)
            text += QChar(0x2026); // an ellipsis: there may be more
    }
    count_label->setText(text);
}
