// What the tours of the workbench share: a window with settings of its own, driven by the names of
// its widgets.
#pragma once

#include "workbench/connectionbar.h"
#include "workbench/workbenchwindow.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <functional>

// Before the QApplication. As Qt 6 does unasked.
inline void high_dpi_set()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

class WorkbenchDriver
{
public:
    using Settings = QList<QPair<QString, QVariant>>;

protected:
    static constexpr int PAUSE_MS = 100; // until a window has drawn itself

    // Pictures go to the folder, which is made.
    WorkbenchDriver(const Settings& settings, const QString& folder, const QSize& size)
        : window(ini_write(settings_folder, settings))
        , folder(folder)
    {
        QDir().mkpath(folder);
        window.show();
        window.resize(size);
    }

    template <typename Widget> Widget* find(const char* name) const
    {
        return window.findChild<Widget*>(name);
    }
    void click(const char* name) const
    {
        QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton);
    }
    void say(const char* name) const
    {
        const auto* const notice = find<QWidget>(name);
        std::printf("%s\n", qPrintable(notice->findChild<QLabel*>("notice_text")->text()));
    }
    void shoot(QWidget& widget, const QString& name) const
    {
        QTest::qWait(PAUSE_MS);
        widget.grab().save(QDir(folder).filePath(name + ".png"));
    }
    // In an event loop as the program's own, where QTest would sleep between its looks.
    bool wait(const std::function<bool()>& condition) const
    {
        constexpr int PATIENCE_MS = 120000;
        QEventLoop loop;
        QTimer look;
        const QDeadlineTimer patience(PATIENCE_MS);
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (condition() || patience.hasExpired())
                loop.quit();
        });
        look.start(1);
        loop.exec();
        return condition();
    }

    LinkWorker::State link_state() { return window.connection().link().state(); }
    bool disconnect()
    {
        if (link_state() == LinkWorker::State::Open)
            click("connect");
        return wait([&] { return link_state() == LinkWorker::State::Closed; });
    }
    bool connect()
    {
        click("connect");
        return wait([&] { return link_state() == LinkWorker::State::Open; });
    }
    void port_set(const QString& port) const
    {
        find<QLineEdit>("link_text")->setText("serial:" + port + ",115200,8N1");
    }

private:
    static QString ini_write(const QTemporaryDir& folder, const Settings& settings)
    {
        const QString path = folder.filePath("workbench.ini");
        QSettings ini(path, QSettings::IniFormat);
        for (const auto& [key, value] : settings)
            ini.setValue(key, value);
        return path;
    }

    const QTemporaryDir settings_folder;

protected:
    WorkbenchWindow window;
    const QString folder;
};
