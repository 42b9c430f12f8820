// The frame of the soak programs: a count of what went wrong, and the main function.
#pragma once

#include <QApplication>
#include <cstdio>

class Soak
{
public:
    int faults = 0;

protected:
    void expect(bool good, const QString& what)
    {
        faults += !good;
        if (!good)
            std::printf("FAULT: %s\n", qPrintable(what));
    }
};

// The main function of a soak program, whose first argument says how much to do.
template <typename Program, typename Application = QApplication>
int soak_main(int argc, char** argv, int usual_amount)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    setvbuf(stdout, nullptr, _IOLBF, 0);
    const Application application(argc, argv);
    Program program;
    program.run(argc > 1 ? atoi(argv[1]) : usual_amount);
    return program.faults == 0 ? 0 : 1;
}
