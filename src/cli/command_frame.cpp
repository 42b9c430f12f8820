// tarnwickctl frame: payload through a stack of framers, by hand.
#include "cli/session.h"
#include "framers/qframer.h"
#include "stack/typedtext.h"

#include <QElapsedTimer>

namespace {
constexpr int LONGEST_PAYLOAD = 65536;
constexpr char HOW_TO_GIVE_BYTES[] =
    "Give bytes as --hex '01 02' or --text hello, or name a file; - is standard input.";

QByteArray payload_to_send(const Invocation& invocation)
{
    const bool given = invocation.has("hex") || invocation.has("text");
    invocation.expect_at_most(given ? 0 : 1);
    if (!given && invocation.argument_count() == 0)
        throw usage_failure("there is nothing to send", HOW_TO_GIVE_BYTES);
    QByteArray payload = invocation.payload(0);
    if (payload.isEmpty()) // no framer takes that
        throw usage_failure("there is nothing to send: no byte was given", HOW_TO_GIVE_BYTES);
    if (payload.size() > LONGEST_PAYLOAD)
        throw usage_failure(QStringLiteral("a payload has at most %1 bytes").arg(LONGEST_PAYLOAD));
    return payload;
}

void send(Connection& connection, const QByteArray& payload)
{
    if (connection.stack.top().write(payload.constData(), int(payload.size())) <= 0)
        throw no_answer(connection.stack, "the frame could not be sent",
                        "The device under the framer didn't take it; -v shows why.");
}

void run_send(Invocation& invocation)
{
    const QByteArray payload = payload_to_send(invocation);
    Connection connection(invocation);
    connection.stack.open();
    send(connection, payload);
    const qint64 on_wire = connection.stack.link().bytes_sent();
    invocation.console.line(QStringLiteral("sent %1 bytes of payload, %2 on the wire")
                                .arg(payload.size())
                                .arg(on_wire));
    invocation.console.result({{"payload_bytes", int(payload.size())}, {"wire_bytes", on_wire}});
}

void run_exchange(Invocation& invocation)
{
    const int most = int(invocation.number("read", 1, LONGEST_PAYLOAD));
    const QByteArray payload = payload_to_send(invocation);
    Connection connection(invocation);
    Stack& stack = connection.stack;
    stack.open();
    stack.top().flush();
    QElapsedTimer clock;
    clock.start();
    send(connection, payload);
    QByteArray answer(most, '\0');
    const int count = stack.top().read(answer.data(), most);
    const qint64 elapsed_ms = clock.elapsed();
    invocation.interrupts.check();
    if (count <= 0)
        throw no_answer(stack, "no answer",
                        "Is the device on? Check the rate, the format and "
                        "--frame, or wait longer with --timeout.");
    answer.truncate(count);
    if (invocation.has("raw"))
        invocation.console.bytes(answer);
    else
        invocation.console.line(shown(answer));
    invocation.console.result({{"answer", shown(answer)}, {"milliseconds", elapsed_ms}});
}
} // namespace

QList<Command> frame_commands()
{
    QList<QCommandLineOption> exchange_options = payload_options();
    exchange_options.append(
        QCommandLineOption("read",
                           "Longest payload expected. A read ends when so much has come, "
                           "or after --timeout.",
                           "bytes", "256"));
    exchange_options.append(QCommandLineOption("raw", "Print the answer's bytes as they are."));
    return {
        {"frame send", "[FILE]", "Send bytes as one frame.",
         "Sends bytes through the framers as one frame and awaits no answer.\n\n"
         "  tarnwickctl frame send --hex '01 02' --link serial:/dev/ttyUSB0,9600 --frame crc16",
         payload_options(), Needs::Stack, run_send},
        {"frame exchange", "[FILE]", "Send bytes as one frame and show the answer.",
         "Sends bytes through the framers as one frame, and prints the payload of the frame that\n"
         "comes back.\n\n"
         "  tarnwickctl frame exchange --hex '03 00 00 00 02' --read 5 --frame rtu:1 \\\n"
         "      --link serial:/dev/ttyUSB0,9600,8E1",
         exchange_options, Needs::Stack, run_exchange},
    };
}
