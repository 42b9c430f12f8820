// What is wrong with a link, as one sentence for the window.
#pragma once

#include "stack/linkproblem.h"

#include <QCoreApplication>

struct LinkWords
{
    Q_DECLARE_TR_FUNCTIONS(LinkWords)
public:
    static QString sentence(const LinkProblem& problem);
};
