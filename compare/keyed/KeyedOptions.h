#pragma once

#include "compare/keyed/KeyFields.h"

#include <QTimer>
#include <QWidget>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QLabel;
class QLineEdit;
class QListView;
QT_END_NAMESPACE

namespace qir {

/// How two tables are to be compared by key, as the user chooses it: the fields of the key, those that are not
/// compared, and which values count as equal.
class KeyedOptions : public QWidget {
    Q_OBJECT

public:
    explicit KeyedOptions(QWidget *parent = nullptr);

    /// Shows the fields that two tables share, checked those of `key`, and those that one of them has. Of the table
    /// shown before, what is ignored stays.
    void setTable(const QString &name, const QStringList &common, const QStringList &others, const QStringList &key);
    /// Checks a field as the key: nobody has chosen it.
    void proposeKey(const QString &field);
    void clear();

    bool hasFields() const { return !m_key.names().isEmpty(); }
    /// The rules as they stand.
    KeyedRules rules() const;

Q_SIGNALS:
    /// The user checked another key.
    void keyChosen(const QStringList &key);
    /// The user changed anything, the key too.
    void changed();

private:
    QListView *makeList(KeyFields &fields, const QString &accessibleName);

    KeyFields m_key;
    KeyFields m_ignored;
    QString m_table;
    QTimer m_typed; // since the last character of the tolerance
    QLabel *m_title = nullptr;
    QLineEdit *m_tolerance = nullptr;
    QCheckBox *m_case = nullptr;
    QCheckBox *m_blanks = nullptr;
};

} // namespace qir
