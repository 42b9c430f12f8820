// A gigabyte at full speed through the window into its capture file: not a byte is lost or changed,
// and with auto clear the memory stays what it was.
//
//   window_soak [megabytes]
#include "soak.h"

#include <QCryptographicHash>
#include <QLineEdit>
#include <poll.h>
#include <random>
#include <thread>

namespace {

constexpr int BLOCK = 4096, BINARY = 256; // bytes of any value at the end of each block of text
constexpr unsigned LINE_LENGTH = 80;      // on average
constexpr double MOST_GROWTH_MB = 12;     // twice what the glyph caches were seen to take

// Writes so many blocks and returns their SHA-256.
QByteArray feed(int fd, qint64 blocks)
{
    std::mt19937 random(1);
    QCryptographicHash sum(QCryptographicHash::Sha256);
    QByteArray block(BLOCK, Qt::Uninitialized);
    for (; blocks > 0; --blocks) {
        for (int i = 0; i < BLOCK; ++i) {
            const auto drawn = unsigned(random());
            const char text = drawn % LINE_LENGTH == 0 ? '\n' : char(' ' + (drawn >> 16) % 95);
            block[i] = i < BLOCK - BINARY ? text : char(drawn);
        }
        sum.addData(block);
        for (int done = 0; done < BLOCK;) {
            pollfd room = {fd, POLLOUT, 0};
            poll(&room, 1, -1);
            const ssize_t n = ::write(fd, block.constData() + done, size_t(BLOCK - done));
            done += n > 0 ? int(n) : 0;
        }
    }
    return sum.result();
}

class WindowSoak : public Soak
{
public:
    void run(int megabytes)
    {
        const qint64 blocks = qint64(megabytes) * 1000000 / BLOCK;
        QFile capture(sandbox.path("capture"));
        find<QLineEdit>("lineEdit_save2file_path")->setText(capture.fileName());
        find<QCheckBox>("checkBox_save2file")->click();
        check("checkBox_window_auto_clr");
        expect(port_open(), "the port can't be opened");

        QByteArray sent;
        QElapsedTimer clock;
        clock.start();
        std::thread feeder([&] { sent = feed(pty.master_fd(), blocks); });
        receive_and_watch(blocks * BLOCK);
        const double seconds = double(clock.elapsed()) / 1000;
        feeder.join();
        find<QCheckBox>("checkBox_save2file")->click();

        QCryptographicHash saved(QCryptographicHash::Sha256);
        capture.open(QIODevice::ReadOnly);
        saved.addData(&capture);
        std::printf("%lld bytes in %.0f s; sha256 of what was sent and of the file:\n%s\n%s\n",
                    (long long)(blocks * BLOCK), seconds, sent.toHex().constData(),
                    saved.result().toHex().constData());
        expect(saved.result() == sent, "the file differs from what was sent");
        expect(answers.boxes.isEmpty(), "messages: " + answers.boxes.join(", "));
    }

private:
    // In the first quarter the toolkit's caches fill with the letters that the bytes happen to
    // make.
    void receive_and_watch(qint64 bytes)
    {
        constexpr int PARTS = 20;
        const QLabel* const received = counter("RX: ");
        double quarter_mb = 0, most_mb = 0;
        for (int part = 1; part <= PARTS; ++part) {
            while (value(received) < bytes * part / PARTS)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            most_mb = qMax(most_mb, ProcessFigures::now().resident_mb);
            quarter_mb = part == PARTS / 4 ? most_mb : quarter_mb;
        }
        std::printf("memory %.1f MB after a quarter, then at most %.1f MB\n", quarter_mb, most_mb);
        expect(most_mb - quarter_mb <= MOST_GROWTH_MB, "memory grew");
    }
};

} // namespace

int main(int argc, char** argv)
{
    return soak_main<WindowSoak>(argc, argv, 1000);
}
