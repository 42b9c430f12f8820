// The columns of the list of prepared strings.
#pragma once

enum StringColumn {
    OPERATION_COLUMN, // the cell that sends its row
    ALIAS_COLUMN,     // its check mark: the row takes part in sending in turn
    VALUE_COLUMN,     // its check mark: the string is hexadecimal
};
