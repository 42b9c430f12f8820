// A dialog or page over an INI file, which it reads at its start and writes at its end.
#pragma once

#include "pty.h"
#include "sandbox.h"
#include "wait.h"

#include <QComboBox>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSpinBox>
#include <gtest/gtest.h>
#include <memory>

template <typename Page> class PageTest : public testing::Test
{
protected:
    // The machine has a port, so that a serial page doesn't change its row to "none".
    PageTest() { pty.link_into(sandbox.ports_folder(), "a"); }

    void open(const std::string& text)
    {
        page.reset();
        file_write(path, QByteArray::fromStdString(text));
        page = std::make_unique<Page>(nullptr, path);
    }
    // What the file holds once the page is gone.
    std::string close()
    {
        page.reset();
        return file_content(path).toStdString();
    }
    template <typename Widget> Widget* child(const char* name) const
    {
        return page->template findChild<Widget*>(name);
    }
    // Replaces the text of an editor by keys.
    template <typename Widget> void enter(const char* name, const QString& text) const
    {
        child<Widget>(name)->selectAll();
        QTest::keyClicks(child<Widget>(name), text);
    }

    Sandbox sandbox;
    Pty pty;
    const QString path = sandbox.path("dialog.ini");
    std::unique_ptr<Page> page;
};
