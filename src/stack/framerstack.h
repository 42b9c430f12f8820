// Framers on a link, assembled from their descriptions.
#pragma once

#include "framers/qframer.h"
#include "stack/stacktext.h"

#include <memory>
#include <vector>

class QLink;

class FramerStack
{
public:
    // `link` outlives it. It may be closed.
    FramerStack(QLink& link, const QVector<FramerDescription>& descriptions);
    ~FramerStack();

    QFramer& top() const { return *framers.back(); }
    // The lowest first: the one that hands frames to the link, then those of the descriptions.
    const std::vector<std::unique_ptr<QFramer>>& all() const { return framers; }

private:
    void add(const FramerDescription& framer);
    // Puts a new framer on top.
    template <typename Framer> Framer& add();

    QLink& link;
    std::vector<std::unique_ptr<QFramer>> framers;
};
