// The workbench's window, driven by clicks and keys, with simulated devices on its links.
#pragma once

#include "linkcfg/qlinkcfgdlg.h"
#include "workbench/connectionbar.h"
#include "workbench/firmwarepage.h"
#include "workbench/workbenchwindow.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QTimer>
#include <gtest/gtest.h>
#include <plainsettings.h>
#include <simulated.h>

class Workbench : public testing::Test
{
protected:
    Workbench()
    {
        configure("workbench/language", "en_US");
        configure("upgrade/reset_wait", 200);
        configure("upgrade/verify_wait", 100);
        configure("workbench/frame", "crc16");
        file_write(sandbox.path("M1_2.bin"), mixed_bytes(60000));
        answers.setInterval(1);
        QObject::connect(&answers, &QTimer::timeout, &answers, [this] { answer(); });
        answers.start();
    }
    ~Workbench() override
    {
        window.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void configure(const QString& key, const QVariant& value)
    {
        QSettings(ini(), QSettings::IniFormat).setValue(key, value);
    }
    QString ini() const { return sandbox.path("workbench.ini"); }
    void window_start()
    {
        window = std::make_unique<WorkbenchWindow>(ini());
        window->show();
        QCoreApplication::sendPostedEvents(); // the language comes by one
    }
    // A module of this name, and the window on its port.
    void module_start(const QString& options = {})
    {
        module = std::make_unique<Simulated>("boot --image " + sandbox.path("rom") +
                                             " --start-time 1 " + options);
        configure("workbench/link", "serial:" + module->address + ",115200,8N1");
        configure("workbench/firmware", sandbox.path("M1_2.bin"));
        window_start();
    }
    bool connect_module()
    {
        click("connect");
        return wait_until([&] { return text<QLabel>("connection_state") == "connected"; });
    }
    bool run_end()
    {
        return wait_until([&] { return !window->firmware().busy(); }, 6 * PATIENCE_MS);
    }
    const UpgradeModule& first() const { return window->firmware().modules().module(0); }
    int percent() const { return find<QProgressBar>("progress")->value(); }
    int pages(PageState state) const { return first().pages().count_of(state); }
    QByteArray rom() const { return file_content(sandbox.path("rom")); }

    template <typename Widget> Widget* find(const char* name) const
    {
        Widget* const widget = window->findChild<Widget*>(name);
        if (!widget)
            throw std::runtime_error(std::string("no widget ") + name);
        return widget;
    }
    void click(const char* name) { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    template <typename Widget> QString text(const char* name) const
    {
        return find<Widget>(name)->text();
    }
    void type(const char* name, const QString& text) { find<QLineEdit>(name)->setText(text); }
    QString notice(const char* name = "firmware_notice") const
    {
        return find<QWidget>(name)->findChild<QLabel*>("notice_text")->text();
    }

    // Answers each modal dialog.
    void answer()
    {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (auto* const box = qobject_cast<QMessageBox*>(dialog)) {
            ++questions;
            box->button(yes ? QMessageBox::Yes : QMessageBox::No)->click();
        } else if (auto* const files = qobject_cast<QFileDialog*>(dialog)) {
            files->findChild<QLineEdit*>("fileNameEdit")->setText(chosen);
            QMetaObject::invokeMethod(files, "accept", Qt::QueuedConnection);
        } else if (auto* const link = qobject_cast<QLinkCfgDlg*>(dialog)) {
            auto* const ports = link->findChild<QComboBox*>("portComboBox");
            offered = link_text(chosen_link(*link).link);
            if (!chosen.isEmpty())
                ports->setCurrentIndex(ports->findText(chosen));
            link->accept();
        }
    }

    Sandbox sandbox;
    std::unique_ptr<Simulated> module;
    QTimer answers;
    int questions = 0;
    bool yes = true;
    QString chosen;  // the file or port that is asked for; empty for what the dialog shows
    QString offered; // the link that the dialog showed
    std::unique_ptr<WorkbenchWindow> window;
};
