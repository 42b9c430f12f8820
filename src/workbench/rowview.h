// A table of rows with one column to type in.
#pragma once

#include <QTableView>

class RowView : public QTableView
{
public:
    explicit RowView(int typed_column)
        : typed_column(typed_column)
    {
    }

protected:
    // F2 and a double click mean the row. Typing does too, but in a column of names, where it finds
    // a name.
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override
    {
        const bool finds = trigger == AnyKeyPressed && index.column() < typed_column;
        return QTableView::edit(finds ? index : index.siblingAtColumn(typed_column), trigger,
                                event);
    }

private:
    const int typed_column;
};
