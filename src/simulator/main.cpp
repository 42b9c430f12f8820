// tarnwick-sim: simulated devices on virtual serial ports.
#include "serialport/standardstreams.h"
#include "simulator/simulator.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    fill_standard_streams();
    const QCoreApplication application(argc, argv);
    return run_simulator(QCoreApplication::arguments().mid(1));
}
