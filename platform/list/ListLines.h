#pragma once

#include <QAbstractListModel>
#include <QIcon>
#include <QString>

#include <functional>
#include <vector>

namespace qir {

/// The lines of a list box as Qt's item model: Qt::DisplayRole is the text, Qt::UserRole the number.
class ListLines : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    bool has(int line) const { return line >= 0 && line < rowCount(); }
    /// `line` must exist.
    const QString &text(int line) const { return m_lines[static_cast<std::size_t>(line)].text; }
    int number(int line) const { return m_lines[static_cast<std::size_t>(line)].number; }
    void setText(int line, const QString &text);
    void setNumber(int line, int number);

    /// A line's icon, and what it says in words; asked for when they are wanted.
    struct Sign {
        QIcon icon;
        QString words;
    };
    void setSigns(std::function<Sign(int line)> signs) { m_signs = std::move(signs); }

    /// Before line `line` (0..rowCount()).
    void insert(int line, const QString &text);
    void clear();
    /// Where a text goes by its collation key, behind the lines of an equal key. Binary search: right only while the
    /// lines are in order.
    int sortedPlace(const QString &text) const;

private:
    struct Line {
        QString text;
        QString key; // of the text, for sorting
        int number = 0;
    };

    QVariant iconOf(int line) const;

    std::vector<Line> m_lines;
    std::function<Sign(int line)> m_signs;
};

} // namespace qir
