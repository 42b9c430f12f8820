// A gigabyte as fast as the window takes it, into its capture file: not a byte is lost or changed,
// and with auto clear the memory stays what it was.
//
//   window_soak [megabytes]
#include "windowsoak.h"

#include <QLineEdit>

namespace {

constexpr double MOST_GROWTH_MB = 12; // twice what the glyph caches were seen to take

class CaptureSoak : public WindowSoak
{
public:
    void run(int megabytes)
    {
        window_start();
        QFile capture(sandbox.path("capture"));
        find<QLineEdit>("lineEdit_save2file_path")->setText(capture.fileName());
        find<QCheckBox>("checkBox_save2file")->click();
        check("checkBox_window_auto_clr");
        expect(port_open(), "the port can't be opened");

        const QByteArray megabyte = mixed_bytes(1000000);
        double quarter_mb = 0, most_mb = 0; // Qt's caches fill in the first quarter
        for (int received = 1; received <= megabytes; ++received) {
            expect(receive(megabyte, received * megabyte.size()), "bytes are lost");
            most_mb = qMax(most_mb, ProcessFigures().resident_mb);
            if (received <= qMax(1, megabytes / 4))
                quarter_mb = most_mb;
        }
        find<QCheckBox>("checkBox_save2file")->click();
        capture.open(QIODevice::ReadOnly);
        int good = 0;
        while (!capture.atEnd())
            good += capture.read(megabyte.size()) == megabyte;
        std::printf("%d of %d megabytes good; memory %.1f MB after a quarter, %.1f MB at most\n",
                    good, megabytes, quarter_mb, most_mb);
        expect(good == megabytes, "the file differs from what was sent");
        expect(most_mb - quarter_mb <= MOST_GROWTH_MB, "memory grew");
        expect(answers.boxes.isEmpty(), "messages: " + answers.boxes.join(", "));
    }
};

} // namespace

int main(int argc, char** argv)
{
    return soak_main<CaptureSoak>(argc, argv, 1000);
}
