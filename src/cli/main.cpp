// tarnwickctl: the device library from a shell.
#include "cli/program.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return run_tarnwickctl(QCoreApplication::arguments().mid(1));
}
