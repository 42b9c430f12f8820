// How a search, or the work on a configuration block, has ended: one sentence with what to do next.
#pragma once

#include "workbench/cnetblockrun.h"
#include "workbench/searchrun.h"

#include <QCoreApplication>

struct CnetWords
{
    Q_DECLARE_TR_FUNCTIONS(CnetWords)
public:
    // `pairs` are those that were searched, `found` the devices.
    static QString search_end(const SearchReport& report, int pairs, int found);
    static QString block_end(const BlockReport& report, const QString& address, bool written);
};
