// tarnwick-sim: simulated devices on virtual serial ports.
#include "simulator/simulator.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return run_simulator(QCoreApplication::arguments().mid(1));
}
