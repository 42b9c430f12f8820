// Writes a firmware file to a module and shows the progress: upgrade /dev/ttyUSB0 M1_2.3.bin
#include <QCoreApplication>
#include <cstdio>
#include <tarnwick/loader.h>
#include <tarnwick/qframercrc16.h>
#include <tarnwick/qframernull.h>
#include <tarnwick/qlinkserial.h>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList words = app.arguments();
    if (words.size() != 3) {
        std::fprintf(stderr, "usage: upgrade <port> <file>\n");
        return 2;
    }
    QLinkSerial link(words[1], {BAUD115200, DATA_8, PAR_NONE, STOP_1, FLOW_OFF, 500}, false);
    if (link.open() != 0) {
        std::fprintf(stderr, "can't open %s\n", qPrintable(words[1]));
        return 1;
    }
    QFramerNull bytes(&link);
    QFramerCrc16 frames(&bytes);
    Loader loader(&frames);
    loader.filename_set(words[2]);

    // The run has a thread of its own; with the application as receiver these come to this one.
    QObject::connect(&loader, &Loader::log, &app,
                     [](const QString& line) { std::fprintf(stderr, "%s\n", qPrintable(line)); });
    QObject::connect(&loader, &Loader::msgbox, &app,
                     [](const QString& text) { std::fprintf(stderr, "%s\n", qPrintable(text)); });
    QObject::connect(&loader, &Loader::upgrade_progress, &app,
                     [](int size, int sent) { std::printf("%d of %d bytes\n", sent, size); });
    QObject::connect(&loader, &QThread::finished, &app, &QCoreApplication::quit);
    loader.upgrade_start();
    app.exec();
    loader.wait();
    return loader.outcome().ending == LoaderEnding::Upgraded ? 0 : 1;
}
