// One line for what a person must know: in the window, and not in a box above it.
#pragma once

#include <QWidget>

class QLabel;

class Notice : public QWidget
{
    Q_OBJECT

public:
    enum class Kind { Hint, Good, Problem };

    explicit Notice(QWidget* parent = nullptr);

    // Stays until the next one. An empty text hides it.
    void say(Kind kind, const QString& text);
    void clear() { say(Kind::Hint, {}); }
    QString text() const;

private:
    QLabel* icon;
    QLabel* label;
};
