#include "workbench/pagemap.h"

#include <algorithm>

PageMap::PageMap(int size, int page_size)
    : size(page_size > 0 ? size : 0)
    , bytes_a_page(page_size)
    , states(page_size > 0 ? int((std::int64_t(size) + page_size - 1) / page_size) : 0,
             PageState::Unknown)
{
}

int PageMap::bytes(int page) const
{
    return std::min(bytes_a_page, size - offset(page));
}

int PageMap::page_at(std::uint32_t offset) const
{
    return offset < std::uint32_t(size) ? int(offset / std::uint32_t(bytes_a_page)) : -1;
}

void PageMap::set(std::uint32_t offset, PageState state)
{
    const int page = page_at(offset);
    if (page >= 0)
        states[page] = state;
}

int PageMap::count_of(PageState state) const
{
    return int(std::count(states.cbegin(), states.cend(), state));
}
