#include "devices/answering.h"

#include <algorithm>
#include <climits>
#include <stdexcept>

namespace {
constexpr int SHOWN_MOST = 48; // bytes of a request in a note

QString shown(const QByteArray& bytes)
{
    QString text = QString::fromLatin1(bytes.left(SHOWN_MOST).toHex(' ').toUpper());
    if (bytes.size() > SHOWN_MOST)
        text += QStringLiteral(" ... (%1 bytes)").arg(bytes.size());
    return text;
}

// In how many places the requests differ; bytes that only one of them has are such places.
int difference(const QByteArray& a, const QByteArray& b)
{
    const int both = int(std::min(a.size(), b.size()));
    int count = int(std::max(a.size(), b.size())) - both;
    for (int i = 0; i < both; ++i)
        count += a[i] != b[i];
    return count;
}
} // namespace

// One request while the capture is read, and what came after it.
struct Answering::Exchange
{
    QByteArray request; // empty while nothing was sent yet, or when bytes are missing
    Answer answer;
    std::chrono::nanoseconds last{0};
};

Answering::Answering(CapturedPort& port, const AnswerSettings& settings, Journal notes)
    : settings(settings)
    , notes(std::move(notes))
{
    if (port.amount().sent == 0)
        throw std::runtime_error(
            QStringLiteral("in %1 nothing was sent to %2, so nothing has an answer; `tarnwick-sim "
                           "replay` plays what was received")
                .arg(port.file_name(), port.amount().port)
                .toStdString());
    learn(port);
    if (known.empty())
        throw std::runtime_error(
            QStringLiteral("in %1 bytes are missing in each request, so nothing has an answer; "
                           "`tarnwickctl capture print` shows what is there")
                .arg(port.file_name())
                .toStdString());
}

void Answering::learn(CapturedPort& port)
{
    Exchange exchange;
    std::int64_t left_out = 0;
    int incomplete = 0;
    while (const auto piece = port.next()) {
        switch (piece->kind) {
        case CapturedPiece::Kind::Missing:
            incomplete += !exchange.request.isEmpty();
            exchange = {};
            continue;
        case CapturedPiece::Kind::Sent:
            if (!exchange.answer.replies.empty() || piece->time - exchange.last > settings.gap) {
                learn(exchange);
                exchange = {};
            }
            exchange.request += piece->bytes;
            break;
        case CapturedPiece::Kind::Received:
            if (exchange.request.isEmpty()) {
                left_out += piece->bytes.size();
                continue;
            }
            exchange.answer.replies.push_back({piece->bytes, piece->time - exchange.last});
            break;
        }
        exchange.last = piece->time;
    }
    learn(exchange);
    if (left_out > 0)
        notes(QStringLiteral("%1 received bytes are left out, as they answer no request")
                  .arg(left_out));
    if (incomplete > 0)
        notes(QStringLiteral("%1 requests are left out, as bytes are missing").arg(incomplete));
}

void Answering::learn(const Exchange& exchange)
{
    if (exchange.request.isEmpty())
        return;
    Answers& answers = known[exchange.request];
    if (answers.all.isEmpty())
        ++sizes[int(exchange.request.size())];
    answers.all += exchange.answer;
    if (settings.delays)
        return;
    for (Reply& reply : answers.all.last().replies)
        reply.after = {};
}

int Answering::request_size(const QByteArray& heard, bool silence) const
{
    const auto from = known.lower_bound(heard);
    const bool may_go_on = from != known.end() && from->first.startsWith(heard) &&
                           (from->first != heard || (std::next(from) != known.end() &&
                                                     std::next(from)->first.startsWith(heard)));
    if (may_go_on && !silence)
        return 0;
    if (const int size = longest_known(heard))
        return size;
    return silence ? int(heard.size()) : 0;
}

int Answering::longest_known(const QByteArray& heard) const
{
    for (const auto& row : sizes)
        if (row.first <= heard.size() && known.count(heard.left(row.first)) > 0)
            return row.first;
    return 0;
}

Answer Answering::answer(const QByteArray& request)
{
    auto found = known.find(request);
    if (found == known.end()) {
        if (!settings.near) {
            notes("unknown, no answer: " + shown(request));
            return {};
        }
        int distance = 0;
        found = nearest(request, distance);
        notes(QStringLiteral("unknown: %1; the answer is that to the nearest, which differs in %2 "
                             "bytes: %3")
                  .arg(shown(request), QString::number(distance), shown(found->first)));
    }
    Answers& answers = found->second;
    const Answer& given = answers.all[answers.next];
    answers.next = (answers.next + 1) % int(answers.all.size());
    return given;
}

std::map<QByteArray, Answering::Answers>::iterator Answering::nearest(const QByteArray& request,
                                                                      int& distance)
{
    auto best = known.begin();
    distance = INT_MAX;
    for (auto row = known.begin(); row != known.end(); ++row) {
        const int here = difference(request, row->first);
        if (here < distance) {
            distance = here;
            best = row;
        }
    }
    return best;
}
