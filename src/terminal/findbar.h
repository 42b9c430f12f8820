// The bar at the top of the receive area that finds text in it.
#pragma once

#include "terminal/textsearch.h"

#include <QBasicTimer>
#include <QFrame>
#include <QPointer>

class PacedLabel;
class QLineEdit;
class QToolButton;
class ReceiveArea;

// Searches in short turns of the event loop, so neither a long text nor data that comes in
// meanwhile has to wait. The area shows all hits in sight at once and the current one apart.
class FindBar : public QFrame
{
    Q_OBJECT
public:
    explicit FindBar(ReceiveArea* area); // a child of `area`, not shown yet

    // Shows the bar and gives it the focus; a selection of some characters becomes what is looked
    // for.
    void open();
    void find_next();     // goes to it, and from the last one to the first; opens a closed bar
    void find_previous(); // the same backwards

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    // A hit to go to as soon as the search has come far enough to know it.
    enum class Goal { None, Nearest, Next, Previous };

    QToolButton* button_create(const char* name, const QString& text);
    void retranslate();
    void place();
    void close_and_give_focus_back();

    void search_anew();
    void front_dropped(int count);
    void text_changed(int from);
    void go(Goal wanted);
    void reach_goal();
    int hit_at_goal(bool complete) const;
    void set_current(int position);
    void show_count();

    ReceiveArea* const area;
    QLineEdit* const line;
    PacedLabel* const count_label;
    QToolButton* const case_button;
    QToolButton* const previous_button;
    QToolButton* const next_button;
    QToolButton* const close_button;
    QPointer<QWidget> focus_before;

    TextSearch search;
    int current = -1; // position of the hit that next and previous start from, or -1
    Goal goal = Goal::None;
    QBasicTimer turn_timer; // runs while something is left to search or to show
};
