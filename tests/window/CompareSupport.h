#pragma once

#include "db/FieldTypes.h"
#include "tests/window/EditSupport.h"

#include <QTemporaryDir>

#include <set>
#include <utility>

namespace qir::test {

/// Two database files side by side.
class CompareFiles {
public:
    CompareFiles(const std::vector<TableOfTexts> &left, const std::vector<TableOfTexts> &right) {
        makeDatabase(path(0), left);
        makeDatabase(path(1), right);
    }
    QString path(int pane) const {
        return m_folder.filePath(pane == 0 ? QStringLiteral("LEFT.DDB") : QStringLiteral("RIGHT.DDB"));
    }
    void open(EditorFixture &fixture) const { fixture.openBoth(path(0), path(1)); }

private:
    QTemporaryDir m_folder;
};

/// A table of one text field.
inline TableOfTexts listOf(const QString &name, const QStringList &texts) {
    return {name, {{QStringLiteral("Name"), FieldType::Text, texts, 20}}};
}

using Cells = std::set<std::pair<int, int>>;

/// The cells (row, column) whose background is red by what the grid's model tells everybody; any other colour than
/// white besides throws.
inline Cells redCells(EditorFixture &fixture, int pane) {
    const QAbstractItemModel *model = fixture.grid(pane).model();
    Cells red;
    for (int row = 0; row < model->rowCount(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            const QVariant background = model->index(row, column).data(Qt::BackgroundRole);
            const QColor colour =
                background.canConvert<QBrush>() ? background.value<QBrush>().color() : background.value<QColor>();
            if (colour == QColor(255, 0, 0))
                red.emplace(row + 1, column + 1);
            else if (colour != QColor(255, 255, 255))
                throw std::runtime_error("a cell is neither red nor white");
        }
    }
    return red;
}

} // namespace qir::test
