// Searches for cnet radios at all rates, on all channels or on some of 9 to 30: search /dev/ttyUSB0
// 9
#include <QCoreApplication>
#include <cstdio>
#include <tarnwick/cnetcfg.h>
#include <tarnwick/hextext.h>
#include <tarnwick/qlinkserial.h>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList words = app.arguments();
    if (words.size() < 2) {
        std::fprintf(stderr, "usage: search <port> [<channel>...]\n");
        return 2;
    }
    unsigned channels = 0;
    for (const QString& word : words.mid(2))
        channels |= 1U << (word.toUInt() - CNET_FIRST_CHANNEL) % CNET_CHANNELS;
    if (channels == 0)
        channels = (1U << CNET_CHANNELS) - 1;
    // The time-out is how long each channel is listened to after the last answer.
    QLinkSerial link(words[1], {BAUD115200, DATA_8, PAR_NONE, STOP_1, FLOW_OFF, 500}, false);
    if (link.open() != 0) {
        std::fprintf(stderr, "can't open %s\n", qPrintable(words[1]));
        return 1;
    }
    CnetCfg radio(&link);

    // An answer is gone after its signal, so it is printed on the search's own thread.
    int found = 0;
    const auto print = [&found](int channel, int rate, const cnet_search_response* answer) {
        const QString bytes = hex_text(answer->bytes, sizeof answer->bytes);
        std::printf("channel %d, %s: %s\n", channel, qPrintable(baud_text(rate)),
                    qPrintable(bytes));
        ++found;
    };
    QObject::connect(&radio,
                     QOverload<int, int, const cnet_search_response*>::of(&CnetCfg::dev_found),
                     &radio, print, Qt::DirectConnection);
    QObject::connect(&radio, &QThread::finished, &app, &QCoreApplication::quit);

    radio.search_all(channels, (1U << CNET_RATES) - 1);
    app.exec();
    std::printf("%d found\n", found);
    return 0;
}
