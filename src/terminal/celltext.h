// How much room each character of a long text takes in a grid of equal cells.
#pragma once

#include <QChar>
#include <QtAlgorithms>
#include <cstdint>
#include <deque>
#include <memory>

enum class Cell : std::uint8_t {
    Narrow, // one cell
    Blank,  // one cell; a row may end after it
    Wide,   // two cells; a row may end on either side
    Tab,    // up to the next tab stop; a row may end after it
    Joined, // none: a combining mark, or the second half of a surrogate pair
    Newline // none, and the row ends after it: U+2028
};

// A stretch of narrow characters and blanks: a bit for each says which it is.
struct PlainRun
{
    const std::uint64_t* blanks = nullptr; // first bit for the character at `begin`
    std::int64_t begin = 0;
    std::int64_t end = 0; // equal to `begin` if there is none

    bool is_blank(std::int64_t position) const
    {
        const auto at = static_cast<size_t>(position - begin);
        return (blanks[at / 64] >> (at % 64) & 1) != 0;
    }
    // The last blank in [from, to), or -1.
    std::int64_t last_blank(std::int64_t from, std::int64_t to) const
    {
        const std::int64_t first = from - begin;
        for (std::int64_t past = to - begin; past > first; past = (past - 1) / 64 * 64) {
            const std::int64_t word = (past - 1) / 64;
            const std::uint64_t found =
                blanks[word] & (~std::uint64_t(0) >> (64 - (past - word * 64)));
            if (found != 0) {
                const std::int64_t last = word * 64 + 63 - qCountLeadingZeroBits(found);
                return last >= first ? begin + last : -1;
            }
        }
        return -1;
    }
};

// The cells of a text to which characters are added at the end and from which they are dropped at
// either end. Positions count all characters ever added, so they stay valid when the front is
// dropped. Costs one bit for a character; pages with anything but narrow ones and blanks cost a
// byte more.
class CellText
{
public:
    std::int64_t begin() const { return first; }
    std::int64_t end() const { return past_last; }

    void append(const QChar* text, int count);
    void drop_before(std::int64_t position);
    void drop_from(std::int64_t position);

    Cell at(std::int64_t position) const;
    // The plain stretch around `position` as far as it is kept in one piece.
    PlainRun plain_run(std::int64_t position) const;

private:
    static constexpr int PAGE = 4096;
    struct Page
    {
        std::uint64_t blanks[PAGE / 64] = {};
        std::unique_ptr<Cell[]> cells; // only where the page isn't plain
    };

    const Page& page_of(std::int64_t position) const;

    std::deque<Page> pages;
    std::int64_t first_page = 0; // number of the page at the front of `pages`
    std::int64_t first = 0;
    std::int64_t past_last = 0;
};

// How many of the first characters are narrow ones and blanks; at least up to the first control
// character, tab, combining or wide one.
int plain_prefix(const QChar* text, int count);

// The cells of the character at text[index]; looks at its neighbours for surrogate pairs.
Cell cell_of(const QChar* text, int index, int count);
