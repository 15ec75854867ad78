#pragma once

#include <QObject>
#include <QString>

namespace qir {

/// Prints what a component has to tell, "qirdb: FILE: text" on the standard error output.
class NoticePrinter final : public QObject {
    Q_OBJECT

public:
    explicit NoticePrinter(const QString &file)
        : m_file(file) {}
    /// Listens to the component, where it has something to tell. Both are connected by name.
    void listenTo(QObject *component);

public Q_SLOTS:
    void print(const QString &text);

private:
    QString m_file;
};

} // namespace qir
