#pragma once

#include "platform/cells/CellTexts.h"
#include "platform/cells/ShownLines.h"
#include "platform/grid/CellColours.h"
#include "platform/grid/IdentityNumbers.h"
#include "platform/grid/UnlikeCells.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <functional>
#include <vector>

namespace qir {

/// The contents of a grid as Qt's item model: model cell (r - 1, k - 1) is grid cell (r, k), the header row is the
/// horizontal header. All members but the model's own count rows and columns as the grid does.
///
/// While only some rows and columns are shown, they alone are the model's, one behind the other, and the vertical
/// header tells their numbers; the grid has all of them still.
class GridModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit GridModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    int rows() const { return m_texts.records() + 1; }
    int columns() const { return m_texts.fields() + 1; }
    /// Cuts or extends; at least the fixed row and column stay. Resets the model when anything changes.
    void setShape(int rows, int columns);
    /// Takes a whole table; `headers` holds the text of column k at k - 1. Resets the model.
    void setTable(const QStringList &headers, CellTexts texts);

    /// Whatever changes the shape, or brings another table, shows everything again.
    const ShownLines &shownRows() const { return m_shownRows; }
    const ShownLines &shownColumns() const { return m_shownColumns; }
    bool showsAll() const { return m_shownRows.isAll() && m_shownColumns.isAll(); }
    /// Resets the model.
    void setShown(ShownLines rows, ShownLines columns);
    /// The model's index of a grid cell; invalid for one that is not shown.
    QModelIndex cellIndex(int row, int column) const;

    QString text(int row, int column) const;
    void setText(int row, int column, const QString &text);
    /// Sets texts one after the other with one notice for all of them at the end.
    class TextBlock;

    const CellTexts &texts() const { return m_texts; }
    const CellColours &colours() const { return m_colours; }
    void setColour(int row, int column, CellColour colour);
    /// Colours the cells of a window; of its rows it takes over too which differ beyond the last column.
    void paint(const GridRange &window, const BitMatrix &different);

    /// What the tool tip and the description of a red cell say, asked for when they are wanted.
    using CellWords = std::function<QString(int row, int column)>;
    void setCellWords(CellWords words) { m_cellWords = std::move(words); }
    /// Of the vertical header: whether the row has a red cell, or a difference beyond the last column.
    static constexpr int DiffersRole = Qt::UserRole;
    /// Of a cell: whether its text is not what is stored; and what to say of it then, asked for when it is wanted.
    static constexpr int UnlikeRole = Qt::UserRole + 1;
    static constexpr int StoredWordsRole = Qt::UserRole + 2;
    using StoredWords = std::function<QString(int row, int column)>;
    void setStoredWords(StoredWords words) { m_storedWords = std::move(words); }
    const UnlikeCells &unlike() const { return m_unlike; }
    /// True when that changes something; the view is not told.
    bool setUnlike(int row, int column, bool unlike);

    /// The current cell is another one: what assistive tools say of it, behind its text, is its field when the column
    /// is another than before, and its record when the row is.
    void tellCurrent(int row, int column);
    /// The next current cell is told of in full, as is the present one: who hears it comes from elsewhere.
    void tellInFull();

    IdentityNumbers &rowData() { return m_rowData; }
    const IdentityNumbers &rowData() const { return m_rowData; }
    IdentityNumbers &columnData() { return m_columnData; }
    const IdentityNumbers &columnData() const { return m_columnData; }

    void reorderRecords(const std::vector<std::uint32_t> &order);

Q_SIGNALS:
    /// Cells were given other texts, whether they are shown or not.
    void textsChanged(const GridRange &cells);
    /// The cells are those of another table, or there are more or fewer of them.
    void textsReplaced();

private:
    void notify(const GridRange &cells, const QList<int> &roles);
    QVariant rowHeaderData(int row, int role) const;
    QString spokenText(int row, int column) const;
    QString spokenDescription(int row, int column) const;

    void showEverything();
    void noteBeyond(int firstRow, int lastRow, const BitMatrix &different);

    CellTexts m_texts;
    CellColours m_colours;
    std::vector<bool> m_differsBeyond; // by row; empty for none
    ShownLines m_shownRows;
    ShownLines m_shownColumns;
    UnlikeCells m_unlike;
    StoredWords m_storedWords;
    QStringList m_headers; // text of column k at k - 1
    IdentityNumbers m_rowData;
    IdentityNumbers m_columnData;
    CellWords m_cellWords;
    int m_toldRow = 0;
    int m_toldColumn = 0;
    bool m_tellsRecord = true;
    bool m_tellsField = true;
    bool m_inFull = true;
};

/// Writes many texts of a model and gives one notice when it goes.
class GridModel::TextBlock {
public:
    explicit TextBlock(GridModel &model)
        : m_model(model) {}
    ~TextBlock();
    TextBlock(const TextBlock &) = delete;
    TextBlock &operator=(const TextBlock &) = delete;

    /// A record cell inside the model.
    void set(int row, int column, QStringView text);

private:
    GridModel &m_model;
    GridRange m_changed;
};

} // namespace qir
