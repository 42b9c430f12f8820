#include "terminal/textsearch.h"

#include <algorithm>
#include <utility>

TextSearch::TextSearch(const QString& wanted, Qt::CaseSensitivity sensitivity, Text source)
    : matcher(wanted.left(MOST_WANTED), sensitivity)
    , text(std::move(source))
{
}

void TextSearch::drop_front(int count)
{
    begin += count;
    done = std::max(done, begin);
    front_is_old = true;
    while (!counts.empty() && page_end(0) <= begin) {
        total -= counts.front();
        counts.pop_front();
        ++first_page;
    }
    if (counts.empty())
        first_page = begin / PAGE;
}

void TextSearch::forget_from(int position)
{
    const std::int64_t changed = std::max(begin, begin + position - wanted_length() + 1);
    if (changed >= done)
        return;
    const size_t kept = page_of(changed);
    for (; counts.size() > kept; counts.pop_back())
        total -= counts.back();
    done = page_begin(kept);
}

bool TextSearch::is_complete(int length) const
{
    if (wanted_length() == 0)
        return true;
    const bool front_is_right = !front_is_old || counts.empty();
    return front_is_right && done >= begin + length - wanted_length() + 1;
}

bool TextSearch::search_a_page(int length)
{
    if (is_complete(length))
        return false;
    const auto counted = [this](std::int64_t from, std::int64_t to) {
        return static_cast<int>(hits_between(from, to).size());
    };
    if (std::exchange(front_is_old, false) && !counts.empty()) {
        total -= counts.front();
        counts.front() = counted(page_begin(0), page_end(0));
        total += counts.front();
        return !is_complete(length);
    }
    const std::int64_t past = begin + length - wanted_length() + 1;
    const size_t page = page_of(done);
    if (page == counts.size())
        counts.push_back(0);
    const std::int64_t from = std::exchange(done, std::min(past, (done / PAGE + 1) * PAGE));
    const int found = counted(from, done);
    counts[page] += found;
    total += found;
    return !is_complete(length);
}

std::int64_t TextSearch::page_begin(size_t page) const
{
    return std::max(begin, (first_page + std::int64_t(page)) * PAGE);
}

std::int64_t TextSearch::page_end(size_t page) const
{
    return std::min(done, (first_page + std::int64_t(page) + 1) * PAGE);
}

int TextSearch::count_before(int position) const
{
    const std::int64_t at = std::min(begin + position, done);
    int sum = 0;
    for (size_t page = 0; page < counts.size(); ++page) {
        if (at < page_end(page))
            return sum + static_cast<int>(hits_between(page_begin(page), at).size());
        sum += counts[page];
    }
    return sum;
}

int TextSearch::first_from(int position) const
{
    const std::int64_t at = begin + std::max(0, position);
    for (size_t page = page_of(at); page < counts.size(); ++page) {
        if (counts[page] == 0)
            continue;
        const std::vector<int> found = hits_between(std::max(at, page_begin(page)), page_end(page));
        if (!found.empty())
            return found.front();
    }
    return -1;
}

int TextSearch::last_before(int position) const
{
    const std::int64_t at = std::min(begin + position, done);
    for (size_t page = counts.size(); page-- > 0;) {
        if (counts[page] == 0 || page_begin(page) >= at)
            continue;
        const std::vector<int> found = hits_between(page_begin(page), std::min(at, page_end(page)));
        if (!found.empty())
            return found.back();
    }
    return -1;
}

std::vector<int> TextSearch::hits_between(std::int64_t from, std::int64_t to) const
{
    return hits(static_cast<int>(from - begin), static_cast<int>(to - begin));
}

std::vector<int> TextSearch::hits(int from, int to) const
{
    std::vector<int> found;
    if (wanted_length() == 0 || from >= to)
        return found;
    const QString piece = text(from, to + wanted_length() - 1);
    auto at = matcher.indexIn(piece);
    for (; at >= 0; at = matcher.indexIn(piece, at + 1))
        found.push_back(from + static_cast<int>(at));
    return found;
}
