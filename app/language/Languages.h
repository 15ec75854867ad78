#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>

namespace qir {

/// The languages that the window speaks. English is what stands in the sources; of the others the texts are built into
/// the program, Qt's own come from where Qt is installed. While this lives, the chosen one is spoken.
class Languages {
public:
    Languages() = default;
    ~Languages();
    Languages(const Languages &) = delete;
    Languages &operator=(const Languages &) = delete;

    /// Their two-letter codes.
    static QStringList all();
    /// The first of the locale's languages that is spoken, else English.
    static QString ofLocale();

    /// Needs the application object. False where there is none of that code: nothing changes then.
    bool speak(const QString &code);

private:
    QTranslator m_own;
    QTranslator m_qt;
};

} // namespace qir
