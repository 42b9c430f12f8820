// The reading side of a measurement: a bare port, a stock text widget, or the program's window.
#include "linkcfg/qlinkcfgdlg.h"
#include "receive_case.h"
#include "terminal/mainwindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextDocumentLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSerialPort>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextDocument>
#include <QTimer>
#include <ctime>
#include <functional>
#include <memory>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace {

constexpr int SAMPLE_MS = 2;

double cpu_seconds()
{
    timespec used = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return double(used.tv_sec) + double(used.tv_nsec) / 1e9;
}

// The largest resident size that this process has had.
qint64 peak_memory_kb()
{
    QFile status("/proc/self/status");
    status.open(QIODevice::ReadOnly);
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).simplified().split(' ').first().toLongLong();
    return 0;
}

class Subject
{
public:
    Subject() = default;
    virtual ~Subject() = default;
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    virtual qint64 received() const = 0;
    virtual QPlainTextEdit* area() const { return nullptr; }
};

class BareReader : public Subject
{
public:
    explicit BareReader(const QString& device)
        : port(device)
    {
        if (!port.open(QIODevice::ReadWrite))
            throw std::runtime_error("the port can't be opened");
        QObject::connect(&port, &QSerialPort::readyRead, [this] { take(port.readAll()); });
    }
    qint64 received() const override { return count; }

protected:
    virtual void take(const QByteArray& data) { count += data.size(); }

private:
    QSerialPort port;
    qint64 count = 0;
};

QString text_of(const QByteArray& data, const Case& wanted)
{
    if (wanted.text == Text::Hexadecimal)
        return QString::fromLatin1(data.toHex(' ').toUpper() + ' ');
    return QString::fromLocal8Bit(data);
}

// What any display on a QTextDocument has to pay.
class DocumentReader : public BareReader
{
public:
    DocumentReader(const QString& device, const Case& shown)
        : BareReader(device)
        , wanted(shown)
    {
        document.setDocumentLayout(new NoLayout(&document));
        document.setUndoRedoEnabled(false);
        document.setMaximumBlockCount(wanted.most_lines);
        end = QTextCursor(&document);
    }

protected:
    void take(const QByteArray& data) override
    {
        end.beginEditBlock();
        end.insertText(text_of(data, wanted));
        end.endEditBlock();
        BareReader::take(data);
    }

private:
    class NoLayout : public QPlainTextDocumentLayout
    {
    public:
        using QPlainTextDocumentLayout::QPlainTextDocumentLayout;

        QRectF blockBoundingRect(const QTextBlock& /*block*/) const override { return {}; }

    protected:
        void documentChanged(int /*from*/, int /*removed*/, int /*added*/) override {}
    };

    QTextDocument document;
    QTextCursor end;
    const Case wanted;
};

// What the program would be with Qt's own widget.
class StockReader : public BareReader
{
public:
    StockReader(const QString& device, const Case& shown)
        : BareReader(device)
        , wanted(shown)
    {
        edit.setReadOnly(true);
        edit.setUndoRedoEnabled(false);
        edit.resize(640, 480);
        edit.show();
    }

protected:
    void take(const QByteArray& data) override
    {
        QTextCursor cursor = edit.textCursor();
        cursor.movePosition(QTextCursor::End);
        edit.setTextCursor(cursor);
        edit.insertPlainText(text_of(data, wanted));
        cursor.movePosition(QTextCursor::End);
        edit.setTextCursor(cursor);
        BareReader::take(data);
    }

private:
    QPlainTextEdit edit;
    const Case wanted;
};

// The program, its port opened as a user does it.
class ProgramReader : public Subject
{
public:
    ProgramReader(const QString& device, const Case& wanted)
        : link(QString::fromLocal8Bit(qgetenv("XDG_RUNTIME_DIR")) + "/tarnwick/ports/bench")
    {
        QDir().mkpath(QFileInfo(link).path());
        QFile::link(device, link);
        window = std::make_unique<MainWindow>();
        window->show();
        widget<QCheckBox>("checkBox_hex_display")->setChecked(wanted.text == Text::Hexadecimal);
        if (wanted.most_lines > 0)
            widget<QSpinBox>("spinBox_auto_clr_threshold")->setValue(wanted.most_lines);
        widget<QCheckBox>("checkBox_window_auto_clr")->setChecked(wanted.most_lines > 0);
        for (QLabel* label : window->findChildren<QLabel*>())
            if (label->text().startsWith(COUNT_TEXT))
                counter = label;
        open_port();
    }

    qint64 received() const override
    {
        return counter->text().mid(int(qstrlen(COUNT_TEXT))).toLongLong();
    }
    QPlainTextEdit* area() const override { return widget<QPlainTextEdit>("plainTextEdit_recv"); }

private:
    static constexpr const char* COUNT_TEXT = "RX: ";

    template <typename Widget> Widget* widget(const char* name) const
    {
        return window->findChild<Widget*>(name);
    }

    void open_port()
    {
        QTimer answer;
        QObject::connect(&answer, &QTimer::timeout, [this] {
            auto* const dialog = qobject_cast<QLinkCfgDlg*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            auto* const ports = dialog->findChild<QComboBox*>("portComboBox");
            ports->setCurrentIndex(ports->findText(link));
            dialog->accept();
        });
        answer.start(1);
        auto* const open = widget<QPushButton>("pushButton_open");
        const QString before = open->text();
        open->click();
        if (open->text() == before)
            throw std::runtime_error("the program can't open the port");
    }

    QString link;
    std::unique_ptr<MainWindow> window;
    QLabel* counter = nullptr;
};

std::unique_ptr<Subject> make_subject(const Case& wanted, const QString& device)
{
    switch (wanted.reader) {
    case Reader::Bare:
        return std::make_unique<BareReader>(device);
    case Reader::Stock:
        return std::make_unique<StockReader>(device, wanted);
    case Reader::Document:
        return std::make_unique<DocumentReader>(device, wanted);
    case Reader::Program:
        break;
    }
    return std::make_unique<ProgramReader>(device, wanted);
}

// Runs the event loop until `subject` has received so many bytes, looking at it now and then.
void run_until_received(const Subject& subject, qint64 bytes, int look_ms,
                        const std::function<void(qint64)>& look)
{
    QEventLoop loop;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        const qint64 received = subject.received();
        look(received);
        if (received >= bytes)
            loop.quit();
    });
    timer.start(look_ms);
    loop.exec();
}

struct Sample
{
    qint64 bytes;
    double cpu_s;
};

double last_to_first_cost(const std::vector<Sample>& samples)
{
    const Sample end = samples.back();
    const qint64 part = end.bytes / 16;
    const Sample first = *std::find_if(samples.begin(), samples.end(),
                                       [&](const Sample& each) { return each.bytes >= part; });
    const Sample last = *std::find_if(samples.rbegin(), samples.rend(), [&](const Sample& each) {
        return each.bytes <= end.bytes - part;
    });
    const double first_cost = (first.cpu_s - samples.front().cpu_s) / double(first.bytes);
    return (end.cpu_s - last.cpu_s) / double(end.bytes - last.bytes) / first_cost;
}

void measure_throughput(const Subject& subject, qint64 bytes, Measured& measured)
{
    constexpr qint64 EARLY = 10 * MB;
    const qint64 memory_before = peak_memory_kb();
    std::vector<Sample> samples = {{0, cpu_seconds()}};
    run_until_received(subject, bytes, SAMPLE_MS, [&](qint64 received) {
        samples.push_back({received, cpu_seconds()});
        if (received >= EARLY && measured.early_memory_kb == 0)
            measured.early_memory_kb = peak_memory_kb() - memory_before;
    });
    measured.cpu_s = samples.back().cpu_s - samples.front().cpu_s;
    measured.last_to_first = last_to_first_cost(samples);
    measured.memory_kb = peak_memory_kb() - memory_before;
}

void measure_stalls(const Subject& subject, qint64 bytes, Measured& measured)
{
    QElapsedTimer since_last;
    since_last.start();
    double cpu_before = cpu_seconds();
    run_until_received(subject, bytes, 1, [&](qint64) {
        const double cpu = cpu_seconds();
        const double wall_ms = double(since_last.nsecsElapsed()) / 1e6;
        if (wall_ms > measured.stall.wall_ms)
            measured.stall = {wall_ms, (cpu - cpu_before) * 1e3};
        since_last.start();
        cpu_before = cpu;
    });
}

class PaintWatch : public QObject
{
public:
    bool painted = false;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        painted = painted || event->type() == QEvent::Paint;
        return false;
    }
};

Duration time_to_paint(QPlainTextEdit& area, const std::function<void()>& act)
{
    PaintWatch watch;
    area.viewport()->installEventFilter(&watch);
    QElapsedTimer clock;
    clock.start();
    const double cpu_before = cpu_seconds();
    act();
    while (!watch.painted)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return {double(clock.nsecsElapsed()) / 1e6, (cpu_seconds() - cpu_before) * 1e3};
}

void press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers)
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QCoreApplication::sendEvent(&widget, &event);
}

void measure_handling(QPlainTextEdit& area, Measured& measured)
{
    QWidget* const window = area.window();
    measured.page_up = time_to_paint(area, [&] { press(area, Qt::Key_PageUp, Qt::NoModifier); });
    measured.resize = time_to_paint(
        area, [&] { window->resize(window->width() + window->width() / 4, window->height()); });
    measured.top = time_to_paint(area, [&] { area.verticalScrollBar()->setValue(0); });
    measured.select_all = time_to_paint(area, [&] { press(area, Qt::Key_A, Qt::ControlModifier); });
}

void report(int pipe, const void* what, size_t size)
{
    if (write(pipe, what, size) != ssize_t(size))
        throw std::runtime_error("the feeder is gone");
}

// A configuration and a folder of virtual ports of its own.
void use_private_folders(const QTemporaryDir& folder)
{
    QDir::setCurrent(folder.path());
    qputenv("XDG_RUNTIME_DIR", folder.path().toLocal8Bit());
}

} // namespace

int read_and_report(const Case& wanted, const char* device, int pipe)
{
    const QTemporaryDir folder;
    use_private_folders(folder);
    int argc = 1;
    char name[] = "bench_receive";
    char* argv[] = {name, nullptr};
    const QApplication application(argc, argv);
    try {
        const auto subject = make_subject(wanted, QString::fromLocal8Bit(device));
        QCoreApplication::processEvents();
        Measured measured;
        report(pipe, "r", 1);
        measure_throughput(*subject, wanted.bytes, measured);
        report(pipe, "b", 1);
        if (wanted.steady_bytes > 0)
            measure_stalls(*subject, wanted.bytes + wanted.steady_bytes, measured);
        if (wanted.handle)
            measure_handling(*subject->area(), measured);
        report(pipe, &measured, sizeof measured);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
