// The languages of the window, and the catalogues that are in use.
#pragma once

#include <QTranslator>

class Language
{
public:
    // What may be stored: empty for the desktop's.
    static constexpr const char* CHINESE = "zh_CN";
    static constexpr const char* ENGLISH = "en_US";

    // The one of ours that comes first in the desktop's list; English when none is in it.
    static QString of_desktop(const QStringList& ui_languages);

    Language() = default;
    ~Language();
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;

    // Widgets hear of it by QEvent::LanguageChange.
    void use(const QString& stored);

private:
    void install(QTranslator& translator, const QString& name, const QString& folder);

    QTranslator qt;      // Qt's own texts
    QTranslator dialogs; // of the link dialog, which the terminal has too
    QTranslator workbench;
};
