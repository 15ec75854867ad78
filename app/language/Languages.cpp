#include "app/language/Languages.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto english = "en"_L1;
constexpr auto german = "de"_L1;
constexpr auto italian = "it"_L1;
constexpr auto ownTexts = ":/translations/qir-editor_%1.qm"_L1;
constexpr auto qtTexts = "qtbase_%1"_L1;

} // namespace

Languages::~Languages() {
    QCoreApplication::removeTranslator(&m_own);
    QCoreApplication::removeTranslator(&m_qt);
}

QStringList Languages::all() {
    return {english, german, italian};
}

QString Languages::ofLocale() {
    const QStringList spoken = all();
    for (const QString &tag : QLocale::system().uiLanguages()) {
        const QString code = tag.section(u'-', 0, 0);
        if (spoken.contains(code))
            return code;
    }
    return english;
}

bool Languages::speak(const QString &code) {
    if (!all().contains(code))
        return false;
    QCoreApplication::removeTranslator(&m_own);
    QCoreApplication::removeTranslator(&m_qt);
    // Dates and sizes follow the language where it is not the locale's.
    if (const QLocale locale(code); code != english && locale.language() != QLocale().language())
        QLocale::setDefault(locale);
    if (code == english)
        return true;
    if (m_own.load(ownTexts.arg(code)))
        QCoreApplication::installTranslator(&m_own);
    if (m_qt.load(qtTexts.arg(code), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qt);
    return true;
}

} // namespace qir
