#include "windowtest.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QTranslator>
#include <QXmlStreamReader>
#include <map>

namespace {

struct Message
{
    QString translation;
    QString comment;
    bool finished = true;
};
using Catalogue = std::map<std::pair<QString, QString>, Message>; // by context and source text

Catalogue catalogue_read(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    QXmlStreamReader xml(&file);
    Catalogue catalogue;
    QString context;
    Message* message = nullptr;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString element = xml.name().toString();
        if (element == "name") {
            context = xml.readElementText();
        } else if (element == "source") {
            message = &catalogue[{context, xml.readElementText()}];
        } else if (element == "translatorcomment") {
            message->comment = xml.readElementText();
        } else if (element == "translation") {
            message->finished = !xml.attributes().hasAttribute("type");
            message->translation = xml.readElementText();
        }
    }
    return catalogue;
}

// Every text that the sources give to tr() and translate(), as Qt's own collector sees
// them.
Catalogue collected_texts(const QString& work_file)
{
    QStringList arguments = {"-silent", "-I", SOURCE_FOLDER, "-extensions", "h,cpp,ui"};
    for (const char* folder :
         {"terminal", "linkcfg", "checksum", "serialport", "links", "framers", "tools"})
        arguments += QString("%1/%2").arg(SOURCE_FOLDER, folder);
    QProcess lupdate;
    lupdate.start(LUPDATE, arguments + QStringList({"-ts", work_file}));
    EXPECT_TRUE(lupdate.waitForFinished(PATIENCE_MS));
    return catalogue_read(work_file);
}

const QString CATALOGUES = QString(SOURCE_FOLDER) + "/resources/language/tarnwick_";
const QStringList CHINESE_CONTEXTS = {"MainWindow",  "QSerialCfgWidget", "HashSelectDialog",
                                      "QLinkCfgDlg", "QLinkSerial",      "QTcpipCfgWidget"};

} // namespace

TEST_F(WindowTest, CataloguesKnowEveryText)
{
    const Catalogue collected = collected_texts(sandbox.path("collected.ts"));
    const Catalogue chinese = catalogue_read(CATALOGUES + "zh_CN.ts");
    const Catalogue english = catalogue_read(CATALOGUES + "en_US.ts");
    EXPECT_GT(collected.size(), 100u);
    for (const auto& text_and_message : collected) {
        auto key = text_and_message.first;
        // Listed by the framer that says it, though tr() takes it from their base.
        if (key.first == "QFramer")
            key.first += key.second.startsWith("cnet") ? "Cnet" : "Rwlt";
        const std::string text = key.first.toStdString() + ": " + key.second.toStdString();
        const auto listed = english.find(key);
        ASSERT_NE(listed, english.end()) << text;
        EXPECT_EQ(listed->second.translation, "") << text;
        const auto entry = chinese.find(key);
        if (!CHINESE_CONTEXTS.contains(key.first)) {
            EXPECT_EQ(entry, chinese.end()) << text;
            continue;
        }
        ASSERT_NE(entry, chinese.end()) << text;
        // A text that stays in English says why.
        EXPECT_NE(entry->second.finished, !entry->second.comment.isEmpty()) << text;
    }
    QTranslator compiled;
    ASSERT_TRUE(compiled.load("tarnwick_zh_CN", ":/language"));
    for (const auto& [key, entry] : chinese)
        EXPECT_EQ(compiled.translate(key.first.toUtf8(), key.second.toUtf8()), entry.translation);
}

TEST_F(WindowTest, SpeaksChineseUnlessSetOtherwise)
{
    QFile::remove("tarnwick.ini");
    window_start();
    EXPECT_EQ(label("pushButton_send"), "\u53D1\u9001(&s)");
    EXPECT_EQ(find<QCheckBox>("checkBox_loop")->text(), "\u56DE\u53D1\u6A21\u5F0F");
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#else
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#endif
    QTranslator translator;
    if (!translator.load("qtbase_zh_CN", folder))
        GTEST_SKIP() << "Qt's own catalogue isn't installed";
    const QDialogButtonBox buttons(QDialogButtonBox::Cancel);
    EXPECT_EQ(buttons.button(QDialogButtonBox::Cancel)->text(),
              translator.translate("QPlatformTheme", "Cancel"));
}

TEST_F(WindowTest, StartsInEnglishAfterOneMessageWithoutACatalogue)
{
    configure("global/language", "xx_YY");
    window_start();
    EXPECT_EQ(answers.boxes, QStringList("note|loading language tarnwick_xx_YY failed"));
    EXPECT_EQ(label("pushButton_open"), "&open");
}
