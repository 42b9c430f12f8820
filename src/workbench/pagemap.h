// What is known of each ROM page of a module during an upgrade: a value without a window.
#pragma once

#include <QVector>
#include <cstdint>

enum class PageState { Unknown, Equal, Differs, Sending, Sent, Failed };
constexpr int PAGE_STATES = 6;

class PageMap
{
public:
    PageMap() = default;
    // The pages of a file of `size` bytes, all unknown; none while the page size isn't known (0).
    PageMap(int size, int page_size);

    int count() const { return int(states.size()); }
    int page_size() const { return bytes_a_page; }
    PageState state(int page) const { return states[page]; }
    // Bytes of that page; the last one may be short.
    int bytes(int page) const;
    int offset(int page) const { return page * bytes_a_page; }
    // The page that holds this offset; -1 for none.
    int page_at(std::uint32_t offset) const;

    // Nothing happens for an offset outside.
    void set(std::uint32_t offset, PageState state);
    int count_of(PageState state) const;

private:
    int size = 0;
    int bytes_a_page = 0;
    QVector<PageState> states;
};
