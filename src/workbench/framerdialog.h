// The editor of a stack of framers: a list of them, and the frame that they make.
#pragma once

#include "stack/stacktext.h"

#include <QDialog>

class FrameBoxes;
class Notice;
class QDialogButtonBox;
class QListWidget;

class FramerDialog : public QDialog
{
    Q_OBJECT

public:
    // `link` decides what fits on it.
    FramerDialog(const LinkDescription& link, const QVector<FramerDescription>& framers,
                 QWidget* parent);

    // What was last without a mistake.
    const QVector<FramerDescription>& framers() const { return good; }

private:
    QWidget* buttons_create();
    void add(const QString& text);
    void remove();
    void move(int step);
    void check();

    const LinkDescription link;
    QVector<FramerDescription> good;
    QListWidget* list;
    FrameBoxes* boxes;
    Notice* notice;
    QDialogButtonBox* answer;
};
