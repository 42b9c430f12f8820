#include "terminal/celltext.h"

#include <algorithm>
#include <iterator>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

// Characters below are neither wide nor combining.
constexpr std::uint16_t FIRST_UNEVEN = 0x300;

struct Range
{
    std::uint32_t first = 0;
    std::uint32_t last = 0;
};

// East Asian wide and fullwidth characters and emoji, as terminals count them.
constexpr Range WIDE[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},
    {0x23F0, 0x23F0},   {0x23F3, 0x23F3},   {0x25FD, 0x25FE},   {0x2614, 0x2615},
    {0x2648, 0x2653},   {0x267F, 0x267F},   {0x2693, 0x2693},   {0x26A1, 0x26A1},
    {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},   {0x26CE, 0x26CE},
    {0x26D4, 0x26D4},   {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},
    {0x26FA, 0x26FA},   {0x26FD, 0x26FD},   {0x2705, 0x2705},   {0x270A, 0x270B},
    {0x2728, 0x2728},   {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},
    {0x2757, 0x2757},   {0x2795, 0x2797},   {0x27B0, 0x27B0},   {0x27BF, 0x27BF},
    {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},   {0x2E80, 0x303E},
    {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0xA4CF},   {0xA960, 0xA97F},
    {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE6F},
    {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},   {0x16FE0, 0x18CFF}, {0x1AFF0, 0x1B2FF},
    {0x1F004, 0x1F004}, {0x1F0CF, 0x1F0CF}, {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A},
    {0x1F200, 0x1F320}, {0x1F32D, 0x1F335}, {0x1F337, 0x1F37C}, {0x1F37E, 0x1F393},
    {0x1F3A0, 0x1F3CA}, {0x1F3CF, 0x1F3D3}, {0x1F3E0, 0x1F3F0}, {0x1F3F4, 0x1F3F4},
    {0x1F3F8, 0x1F43E}, {0x1F440, 0x1F440}, {0x1F442, 0x1F4FC}, {0x1F4FF, 0x1F53D},
    {0x1F54B, 0x1F54E}, {0x1F550, 0x1F567}, {0x1F57A, 0x1F57A}, {0x1F595, 0x1F596},
    {0x1F5A4, 0x1F5A4}, {0x1F5FB, 0x1F64F}, {0x1F680, 0x1F6C5}, {0x1F6CC, 0x1F6CC},
    {0x1F6D0, 0x1F6D2}, {0x1F6D5, 0x1F6D7}, {0x1F6DD, 0x1F6DF}, {0x1F6EB, 0x1F6EC},
    {0x1F6F4, 0x1F6FC}, {0x1F7E0, 0x1F7EB}, {0x1F90C, 0x1F93A}, {0x1F93C, 0x1F945},
    {0x1F947, 0x1F9FF}, {0x1FA70, 0x1FAFF}, {0x20000, 0x3FFFD},
};

bool is_wide(std::uint32_t code)
{
    const auto* range =
        std::lower_bound(std::begin(WIDE), std::end(WIDE), code,
                         [](const Range& r, std::uint32_t c) { return r.last < c; });
    return range != std::end(WIDE) && range->first <= code;
}

bool is_joined(std::uint32_t code)
{
    const auto category = QChar::category(code);
    const bool hangul_vowel_or_final = code >= 0x1160 && code <= 0x11FF;
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing ||
           category == QChar::Other_Format || hangul_vowel_or_final;
}

bool is_plain_character(QChar c)
{
    return c.unicode() < FIRST_UNEVEN && c != QLatin1Char('\t');
}

bool is_plain_text(const QChar* text, int count)
{
    for (int done = plain_prefix(text, count); done < count;
         done += plain_prefix(text + done, count - done)) {
        if (!is_plain_character(text[done]))
            return false;
        ++done;
    }
    return true;
}

// A bit for each of at most 64 characters.
std::uint64_t blanks_of(const QChar* text, int count)
{
    std::uint64_t blanks = 0;
    int done = 0;
#ifdef __SSE2__
    const __m128i blank = _mm_set1_epi16(' ');
    for (; done + 16 <= count; done += 16) {
        const auto* at = reinterpret_cast<const __m128i*>(text + done);
        const __m128i low = _mm_cmpeq_epi16(_mm_loadu_si128(at), blank);
        const __m128i high = _mm_cmpeq_epi16(_mm_loadu_si128(at + 1), blank);
        blanks |= std::uint64_t(std::uint32_t(_mm_movemask_epi8(_mm_packs_epi16(low, high))))
                  << done;
    }
#endif
    for (; done < count; ++done)
        blanks |= std::uint64_t(text[done].unicode() == ' ') << done;
    return blanks;
}

void append_blanks(std::uint64_t* blanks, int offset, const QChar* text, int count)
{
    for (int done = 0; done < count;) {
        const int bit = (offset + done) % 64;
        const int run = std::min(64 - bit, count - done);
        blanks[(offset + done) / 64] |= blanks_of(text + done, run) << bit;
        done += run;
    }
}

} // namespace

int plain_prefix(const QChar* text, int count)
{
    int done = 0;
#ifdef __SSE2__
    const __m128i low = _mm_set1_epi16(' ' - 1);
    const __m128i high = _mm_set1_epi16(FIRST_UNEVEN);
    for (; done + 8 <= count; done += 8) {
        const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + done));
        // As signed numbers, so characters from 0x8000 on are below `low`.
        const __m128i plain = _mm_and_si128(_mm_cmpgt_epi16(c, low), _mm_cmplt_epi16(c, high));
        if (_mm_movemask_epi8(plain) != 0xFFFF)
            break;
    }
#endif
    while (done < count && text[done].unicode() >= ' ' && text[done].unicode() < FIRST_UNEVEN)
        ++done;
    return done;
}

Cell cell_of(const QChar* text, int index, int count)
{
    const QChar c = text[index];
    if (c == QLatin1Char(' '))
        return Cell::Blank;
    if (c == QLatin1Char('\t'))
        return Cell::Tab;
    if (c.unicode() < FIRST_UNEVEN)
        return Cell::Narrow;
    if (c == QChar::LineSeparator)
        return Cell::Newline;
    std::uint32_t code = c.unicode();
    if (c.isHighSurrogate() && index + 1 < count && text[index + 1].isLowSurrogate())
        code = QChar::surrogateToUcs4(c, text[index + 1]);
    else if (c.isLowSurrogate() && index > 0 && text[index - 1].isHighSurrogate())
        return Cell::Joined;
    if (is_joined(code))
        return Cell::Joined;
    return is_wide(code) ? Cell::Wide : Cell::Narrow;
}

void CellText::append(const QChar* text, int count)
{
    for (int done = 0; done < count;) {
        const int offset = static_cast<int>(past_last % PAGE);
        if (past_last / PAGE == first_page + std::int64_t(pages.size()))
            pages.emplace_back();
        const int room = std::min(count - done, PAGE - offset);
        Page& page = pages.back();
        const bool plain = !page.cells && is_plain_text(text + done, room);
        if (!plain) {
            if (!page.cells) {
                page.cells = std::make_unique<Cell[]>(PAGE);
                for (int i = 0; i < offset; ++i)
                    page.cells[i] =
                        (page.blanks[i / 64] >> (i % 64) & 1) != 0 ? Cell::Blank : Cell::Narrow;
            }
            for (int i = 0; i < room; ++i)
                page.cells[offset + i] = cell_of(text, done + i, count);
        }
        append_blanks(page.blanks, offset, text + done, room);
        done += room;
        past_last += room;
    }
}

void CellText::drop_before(std::int64_t position)
{
    first = position;
    while (!pages.empty() && (first_page + 1) * PAGE <= first) {
        pages.pop_front();
        ++first_page;
    }
    if (pages.empty())
        first_page = first / PAGE;
}

void CellText::drop_from(std::int64_t position)
{
    past_last = position;
    while (!pages.empty() && (first_page + std::int64_t(pages.size()) - 1) * PAGE >= past_last)
        pages.pop_back();
    if (pages.empty()) {
        first_page = past_last / PAGE;
        return;
    }
    const int kept = static_cast<int>(past_last % PAGE);
    if (kept == 0)
        return;
    Page& page = pages.back();
    if (kept % 64 != 0)
        page.blanks[kept / 64] &= (std::uint64_t(1) << (kept % 64)) - 1;
    std::fill(page.blanks + (kept + 63) / 64, page.blanks + PAGE / 64, 0);
}

const CellText::Page& CellText::page_of(std::int64_t position) const
{
    return pages[static_cast<size_t>(position / PAGE - first_page)];
}

Cell CellText::at(std::int64_t position) const
{
    const Page& page = page_of(position);
    const auto offset = static_cast<size_t>(position % PAGE);
    if (page.cells)
        return page.cells[offset];
    return (page.blanks[offset / 64] >> (offset % 64) & 1) != 0 ? Cell::Blank : Cell::Narrow;
}

PlainRun CellText::plain_run(std::int64_t position) const
{
    const Page& page = page_of(position);
    const std::int64_t begin = position - position % PAGE;
    return {page.blanks, begin, page.cells ? begin : std::min(begin + PAGE, past_last)};
}
