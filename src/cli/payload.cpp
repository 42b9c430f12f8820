#include "cli/payload.h"

#include "cli/hexbytes.h"
#include "cli/usage.h"

#include <QFile>
#include <limits>

QList<QCommandLineOption> payload_options()
{
    return {{"hex", "Take these bytes, in hexadecimal.", "bytes"},
            {"text", "Take this text, in UTF-8.", "text"}};
}

static QByteArray read_all(QFile& file, const QString& name)
{
    // More than a byte array holds. The size of a pipe is 0 and tells nothing.
    if (file.size() >= std::numeric_limits<int>::max() - 1024)
        throw Failure{ExitCode::File, name + " is larger than 2 GiB", {}};
    QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError || bytes.size() < file.size())
        throw Failure{
            ExitCode::File, name + " can't be read to its end: " + file.errorString(), {}};
    return bytes;
}

QByteArray payload_of(const Invocation& invocation, int argument)
{
    if (invocation.has("hex") && invocation.has("text"))
        throw usage_failure("--hex and --text: choose one of them");
    if (invocation.has("text"))
        return invocation.text("text").toUtf8();
    if (invocation.has("hex")) {
        const QString text = invocation.text("hex");
        return parsed_or_usage("--hex", text, parse_hex_bytes(text));
    }
    QFile file;
    const bool named =
        invocation.argument_count() > argument && invocation.argument(argument, {}) != "-";
    if (!named) {
        if (!file.open(stdin, QIODevice::ReadOnly))
            throw Failure{ExitCode::File, "standard input can't be read", {}};
        return read_all(file, "standard input");
    }
    file.setFileName(invocation.argument(argument, {}));
    if (!file.open(QIODevice::ReadOnly))
        throw Failure{ExitCode::File,
                      "the file " + file.fileName() + " can't be read: " + file.errorString(),
                      "Check the name and the rights of the file."};
    return read_all(file, file.fileName());
}
