#pragma once

#include <QObject>
#include <QString>

#include <utility>

namespace qir {

class QirDatabase;

/// Prints what a component has to tell, "qirdb: FILE: text" on the standard error output.
class NoticePrinter final : public QObject {
    Q_OBJECT

public:
    explicit NoticePrinter(QString file)
        : m_file(std::move(file)) {}
    /// Listens to the component, where it has something to tell.
    void listenTo(const QirDatabase &database);

private Q_SLOTS:
    void print(const QString &text); // connected by its meta-method

private:
    QString m_file;
};

} // namespace qir
