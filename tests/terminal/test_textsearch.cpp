#include "terminal/textsearch.h"

#include <gtest/gtest.h>
#include <random>

TEST(TextSearch, KnowsTheHitsOfASlowSearchWhateverHappensToTheText)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
        const auto random_text = [&](int length) {
            QString text;
            for (int i = 0; i < length; ++i)
                text += QString("aab\nA")[below(seed % 4 == 0 ? 2 : 5)];
            return text;
        };
        const auto sensitivity = seed % 2 == 0 ? Qt::CaseSensitive : Qt::CaseInsensitive;
        const QString wanted = random_text(1 + below(4)).replace('\n', 'b');
        QString text = random_text(below(3) * TextSearch::PAGE);
        TextSearch search(wanted, sensitivity,
                          [&](int from, int to) { return text.mid(from, to - from); });
        for (int step = 0; step < 30; ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
            const int count = qMin(text.size(), below(below(2) == 0 ? 20 : text.size() + 1));
            if (below(10) < 3) {
                text.remove(0, count);
                search.drop_front(count);
            } else {
                text.chop(below(2) * count);
                search.forget_from(text.size());
                text += random_text(below(TextSearch::PAGE));
            }
            for (int pages = below(4); pages > 0; --pages)
                search.search_a_page(text.size());
            if (below(2) == 0)
                continue;
            while (search.search_a_page(text.size()))
                continue;
            std::vector<int> slow;
            for (int at = -1; (at = text.indexOf(wanted, at + 1, sensitivity)) >= 0;)
                slow.push_back(at);
            ASSERT_EQ(search.count(), int(slow.size()));
            ASSERT_EQ(search.hits(0, text.size()), slow);
            const int here = below(text.size() + 1);
            const auto after = std::lower_bound(slow.begin(), slow.end(), here);
            ASSERT_EQ(search.first_from(here), after == slow.end() ? -1 : *after);
            ASSERT_EQ(search.last_before(here), after == slow.begin() ? -1 : *(after - 1));
            ASSERT_EQ(search.count_before(here), int(after - slow.begin()));
        }
    }
}
