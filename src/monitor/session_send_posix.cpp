// What goes out in a session: strings, a file, and what stdin gives.
#include "monitor/session.h"

#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {
constexpr int PIECE = 4096; // of a file or of stdin
}

void Session::send(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return;
    if (!options.framers) {
        queue.add(bytes);
        push();
        return;
    }
    if (reader)
        reader->send_frame(bytes);
}

int Session::unsent() const
{
    return queue.size() + (reader ? reader->unsent() : 0);
}

// The same would happen to the rest of a file.
void Session::refuse(const QByteArray& bytes, const QString& reason)
{
    if (file) {
        end_file(reason);
        return;
    }
    note("not sent: " + reason);
    queue.taken(int(bytes.size()), capture_time_ns());
}

// As much as the wire takes now.
void Session::push()
{
    while (reader && !blocked) {
        if (file && queue.size() < PIECE)
            feed_file();
        const QByteArray bytes = queue.ready(capture_time_ns());
        if (bytes.isEmpty())
            return;
        std::unique_lock order(recorder.order);
        const std::int64_t begun_ns = capture_time_ns();
        const int count = wire.send(bytes.constData(), int(bytes.size()));
        if (count == Wire::REFUSED) {
            refuse(bytes, QString::fromLocal8Bit(std::strerror(errno)));
            continue;
        }
        blocked = count < bytes.size();
        if (count <= 0)
            return; // the reader is the one that notices a loss
        Chunk chunk;
        chunk.time_ns = begun_ns;
        chunk.bytes = bytes.left(count);
        chunk.direction = Direction::Out;
        recorder.record(chunk);
        order.unlock();
        queue.taken(count, capture_time_ns());
        statistics.count(chunk);
        if (output)
            output->add(chunk);
        if (!file && queue.size() == 0)
            return;
    }
}

void Session::take_input()
{
    if (screen.has_typed()) {
        take_keys(screen.take_typed());
        return;
    }
    char bytes[PIECE];
    const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    const QByteArray input(bytes, int(std::max(ssize_t(0), count)));
    input_open = !input.isEmpty();
    if (screen.has_keys() && input_open)
        take_keys(input);
    else if (screen.has_keys())
        end_with(SessionEnd::Quit); // the terminal has gone
    else
        take_piped(input);
}

// A frame is a line of it.
void Session::take_piped(const QByteArray& bytes)
{
    if (!options.framers) {
        send(options.ending ? with_ending(bytes, '\n', ending) : bytes);
        return;
    }
    input_line += bytes;
    for (int feed = int(input_line.indexOf('\n')); feed >= 0;
         feed = int(input_line.indexOf('\n'))) {
        send(input_line.left(feed));
        input_line.remove(0, feed + 1);
    }
    if (!input_open)
        send(std::exchange(input_line, {}));
}

void Session::begin_file(const QString& name)
{
    const QString path = name.startsWith("~/") ? qEnvironmentVariable("HOME") + name.mid(1) : name;
    auto opened = std::make_unique<QFile>(path);
    // The open of a pipe could wait for ever.
    const bool other = QFileInfo::exists(path) && !QFileInfo(path).isFile();
    if (other || !opened->open(QIODevice::ReadOnly)) {
        const QString kind = QFileInfo(path).isDir() ? "it is a folder" : "it is no regular file";
        note("the file " + path + " can't be read: " + (other ? kind : opened->errorString()));
        return;
    }
    if (options.framers)
        note("the file goes out as it is, without frames");
    file = std::move(opened);
    file_sent = 0;
    file_percent = -1;
    show_progress();
    push();
}

void Session::feed_file()
{
    const QByteArray piece = file->read(PIECE);
    if (file->error() != QFile::NoError) {
        end_file(file->errorString());
        return;
    }
    file_sent += piece.size();
    queue.add(piece);
    show_progress();
    if (piece.isEmpty() && queue.size() == 0)
        end_file({});
}

void Session::show_progress()
{
    const std::int64_t size = std::max(qint64(1), file->size());
    const int percent = int((file_sent - queue.size()) * 100 / size);
    if (percent == file_percent || !screen.has_keys())
        return;
    file_percent = percent;
    output->show_line(QStringLiteral("sending %1: %2 %, Ctrl-C stops ")
                          .arg(QFileInfo(*file).fileName())
                          .arg(percent),
                      LineEdit(file_names));
}

// `reason` is empty when all of it has gone out.
void Session::end_file(const QString& reason)
{
    const QString name = QFileInfo(*file).fileName();
    const std::int64_t sent = file_sent - queue.size();
    file.reset();
    queue.clear();
    note(reason.isEmpty() ? QStringLiteral("%1 sent, %2 bytes").arg(name).arg(sent)
                          : QStringLiteral("%1 not sent to its end, but %2 bytes: %3")
                                .arg(name)
                                .arg(sent)
                                .arg(reason));
    ask(Asking::Nothing);
}
