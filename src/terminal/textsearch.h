// Looks for a text in a long one that grows at its end and is dropped at its front.
#pragma once

#include <QString>
#include <QStringMatcher>
#include <cstdint>
#include <deque>
#include <functional>
#include <vector>

// A hit is each position where the wanted text is found, so hits may overlap: whether a position
// is one depends on no other, and stays so when the front is dropped. No positions are kept, only
// how many begin in each page of the text: 4 bytes for 16,384 characters, however many there are.
// Where a hit is, its page is read again. Positions are those in the text as it is now, from 0.
class TextSearch
{
public:
    static constexpr int PAGE = 16 * 1024;
    static constexpr int MOST_WANTED = 256; // characters looked for, which bounds a page's time

    // Returns the characters of [from, to), or those of them that the text has.
    using Text = std::function<QString(int from, int to)>;

    TextSearch() = default; // finds nothing
    // Looks for the first MOST_WANTED characters of `wanted` in what `text` returns.
    TextSearch(const QString& wanted, Qt::CaseSensitivity sensitivity, Text text);

    int wanted_length() const { return matcher.pattern().size(); }

    void drop_front(int count);         // the text has lost its first characters
    void forget_from(int position);     // the text from there on is another one
    bool search_a_page(int length);     // of a text that long; false if nothing is left to do
    bool is_complete(int length) const; // nothing is left to do

    // Whether a hit begins is known up to this position.
    int searched() const { return static_cast<int>(done - begin); }
    // Exact once is_complete().
    int count() const { return total; }
    int count_before(int position) const;
    // The first hit at or after a position and the last one before it, as far as pages have
    // been searched; -1 if there is none.
    int first_from(int position) const;
    int last_before(int position) const;

    // The hits that begin in [from, to), in order, whether their pages have been searched or not.
    std::vector<int> hits(int from, int to) const;

private:
    std::int64_t page_begin(size_t page) const;
    std::int64_t page_end(size_t page) const;
    size_t page_of(std::int64_t at) const { return static_cast<size_t>(at / PAGE - first_page); }
    std::vector<int> hits_between(std::int64_t from, std::int64_t to) const;

    QStringMatcher matcher;
    Text text;
    // Counting all characters that the text ever had, so they outlast a drop of the front.
    std::int64_t begin = 0; // of the text as it is now
    std::int64_t done = 0;  // whether a hit begins is known up to here
    std::int64_t first_page = 0;
    std::deque<int> counts;    // hits of the pages between `begin` and `done`
    int total = 0;             // their sum
    bool front_is_old = false; // the first page counts hits that have been dropped
};
