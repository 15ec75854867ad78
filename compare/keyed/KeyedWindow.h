#pragma once

#include "compare/keyed/KeyedChanges.h"
#include "compare/keyed/KeyedOptions.h"

#include <QDialog>
#include <QTimer>

#include <array>
#include <functional>
#include <memory>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
QT_END_NAMESPACE

namespace qir {

/// The window that tells the differences of two tables by key. It reads the snapshots that it is given and nothing
/// else, so that whatever happens in the main window meanwhile, what it shows hangs together.
class KeyedWindow : public QDialog {
    Q_OBJECT

public:
    explicit KeyedWindow(QWidget *parent);

    /// Shows two tables, compared by `key`, or where it is empty by the field that can be proposed.
    void showTables(const QString &name, std::shared_ptr<TableSnapshot> left, std::shared_ptr<TableSnapshot> right,
                    const QStringList &key);
    /// There is nothing to compare, and why.
    void showNothing(const QString &reason);
    /// Reads tables, with a button that ends it. False when it was ended: nothing is shown then.
    bool readTables(const std::function<void(const KeyedStep &step)> &read);
    /// The tables have changed since: the changes that are listed lead nowhere any more.
    void setStale();
    bool isStale() const { return m_stale; }
    /// While a comparison goes on nothing else can be shown.
    bool isComparing() const { return m_comparing; }

    const KeyedChanges &changes() const { return m_changes; }
    /// What is compared now, and how.
    const QString &table() const { return m_table; }
    KeyedRules rules() const { return m_options->rules(); }

Q_SIGNALS:
    /// The user chose another key.
    void keyChosen(const QStringList &key);
    /// The user asks for a row's records. A field is 0 where the row is about no value.
    void recordsChosen(const PairedRecords &records, const FieldPair &field);
    /// The ticked changes are to be carried to a side.
    void carryAsked(const CarriedChanges &changes);
    /// A report of what is compared is asked for.
    void reportAsked();
    /// The tables are to be read again.
    void againAsked();

public Q_SLOTS:
    void reject() override;

private:
    void build();
    QWidget *buildChanges();
    QWidget *buildCarrying();
    QPushButton *addButton(const QString &caption, const std::function<void()> &pressed);
    void connectControls();
    void compare();
    /// Runs what takes long, with a button that ends it. False when it was ended.
    bool runCancellable(const std::function<void(const KeyedStep &step)> &work);
    void tellResult();
    void filterChanges();
    void chooseRow(const QModelIndex &index);
    void copyRows();
    void carry(int to);
    void showTicks();
    void showFiltered();

    KeyedChanges m_changes;
    QString m_result; // of the comparison, as the state tells it
    QString m_table;
    std::shared_ptr<TableSnapshot> m_left;
    std::shared_ptr<TableSnapshot> m_right;
    bool m_stale = false;
    bool m_noneUnique = false; // no field could be proposed as the key
    bool m_comparing = false;
    bool m_cancelled = false;
    QTimer m_typed;               // since the last character of the search
    QWidget *m_content = nullptr; ///< All but what tells the state and ends a comparison.
    KeyedOptions *m_options = nullptr;
    QLineEdit *m_search = nullptr;
    QComboBox *m_kinds = nullptr;
    QTableView *m_view = nullptr;
    QLabel *m_status = nullptr;
    QPushButton *m_cancel = nullptr;
    QPushButton *m_again = nullptr;
    QCheckBox *m_tickAll = nullptr;
    std::array<QPushButton *, 2> m_carry{};
    QPushButton *m_report = nullptr;
};

} // namespace qir
