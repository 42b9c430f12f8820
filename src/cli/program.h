// tarnwickctl from its arguments to its exit code.
#pragma once

#include <QStringList>

// `arguments` without the program's name. Needs a QCoreApplication.
int run_tarnwickctl(const QStringList& arguments);
