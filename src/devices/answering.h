// Answers as a recorded device did.
#pragma once

#include "devices/capturedport.h"

#include <map>

struct AnswerSettings
{
    std::chrono::milliseconds gap{100}; // a silence that ends a request
    bool delays = false;                // answers come after the recorded time, else at once
    bool near = false;                  // what is unknown gets the answer to the nearest request
};

// What a request is, in the capture: all that was sent without a longer silence than the gap and
// with nothing received meanwhile, in however many pieces it was written or recorded. Its answer is
// all that was received before the next one; it may be none. So
//   - a request that was repeated after a time-out is two, the first of which has no answer
//   - two requests at once, their answers after both, are one: asked one by one they are unknown
//   - text typed slowly is a request for each key, with the answer at the last one
// What was received before the first request is left out, and so is an exchange with missing bytes.
//
// What a request is, in what arrives: the longest one of the capture that it begins with, as soon
// as it can't become a longer one, at the latest after a silence of the gap. Without any such, all
// up to that silence is one unknown request.
//
// A request that occurs several times in the capture gets its answers in that order, and after the
// last the first again: a whole session can be repeated.
class Answering : public Module
{
public:
    // Throws std::runtime_error when nothing was sent, or no request is whole. What is unknown, and
    // what of the capture is left out, is reported in `notes`.
    Answering(CapturedPort& port, const AnswerSettings& settings, Journal notes);

    int request_size(const QByteArray& heard, bool silence) const override;
    Answer answer(const QByteArray& request) override;

private:
    struct Exchange;

    struct Answers
    {
        QVector<Answer> all;
        int next = 0;
    };

    void learn(CapturedPort& port);
    void learn(const Exchange& exchange);
    int longest_known(const QByteArray& heard) const;
    std::map<QByteArray, Answers>::iterator nearest(const QByteArray& request, int& distance);

    const AnswerSettings settings;
    const Journal notes;
    std::map<QByteArray, Answers> known;
    std::map<int, int, std::greater<>> sizes; // of known requests, how many have each
};
