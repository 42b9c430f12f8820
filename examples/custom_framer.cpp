// A framer of one's own, tried on a device that echoes: custom_framer /dev/ttyUSB0 hello
#include <QCoreApplication>
#include <cstdio>
#include <tarnwick/qframernull.h>
#include <tarnwick/qlinkserial.h>

// A byte with the payload's length, then 0 to 255 bytes of payload. It stacks on any other framer.
class QFramerLength : public QFramer
{
public:
    explicit QFramerLength(QFramer* lower) { lower_set(lower); }

    void flush() override { lower_flush(); }
    int write(const char* buffer, int nbytes) override
    {
        if (nbytes < 0 || nbytes > 255)
            return FRAMER_BAD_SIZE;
        const QByteArray frame = char(nbytes) + QByteArray(buffer, nbytes);
        const int sent = lower_write(frame.constData(), int(frame.size()));
        return sent == frame.size() ? nbytes : sent;
    }
    int read(char* buffer, int nbytes) override
    {
        QByteArray frame(qMax(0, nbytes) + 1, '\0');
        const int size = lower_read(frame.data(), int(frame.size()));
        if (size < 1)
            return size; // nothing came, or an error below
        const int length = quint8(frame[0]);
        if (length != size - 1)
            return FRAMER_BAD_FRAME;
        std::copy_n(frame.constData() + 1, length, buffer);
        return length;
    }
};

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList words = app.arguments();
    if (words.size() != 3) {
        std::fprintf(stderr, "usage: custom_framer <port> <text>\n");
        return 2;
    }
    QLinkSerial link(words[1], {BAUD115200, DATA_8, PAR_NONE, STOP_1, FLOW_OFF, 500}, false);
    QFramerNull bytes(&link);
    QFramerLength frames(&bytes);
    const QByteArray text = words[2].toUtf8();
    char reply[255];
    if (link.open() != 0 || frames.write(text.constData(), int(text.size())) < 0) {
        std::fprintf(stderr, "can't write to %s\n", qPrintable(words[1]));
        return 1;
    }
    const int size = frames.read(reply, int(text.size()));
    std::printf("%d bytes: %s\n", size, QByteArray(reply, qMax(0, size)).constData());
    return 0;
}
