#pragma once

#include "find/CellFinder.h"

#include <QWidget>

QT_BEGIN_NAMESPACE
class QAbstractButton;
class QAbstractItemModel;
class QGridLayout;
class QLabel;
class QLineEdit;
class QTableView;
QT_END_NAMESPACE

namespace qir {

/// The bar below the grids that asks what to look for and tells what was found. It knows what is typed and pressed;
/// what comes of it is done by whoever listens.
class FindBar : public QWidget {
    Q_OBJECT

public:
    explicit FindBar(QWidget *parent);

    SearchTerms terms() const;
    SearchScope scope() const;
    QString replacement() const;

    void setHits(QAbstractItemModel &hits);
    /// How many cells hit, and what else there is to say.
    void tell(const QString &count, const QString &note);
    void showHits(bool shown);
    /// Shows the bar with the keyboard in the text to look for, or in the one to replace it.
    void begin(bool replacing);
    /// The height that it asks for below the frames; 0 while it is hidden.
    int heightForWidth(int width) const override;

Q_SIGNALS:
    void edited(); ///< Another text to look for, or another way.
    void asked(int step);
    void replaceAsked(bool all);
    void chosen(int hit);
    void escaped();
    void closed();
    void resized(); ///< It asks for another height, or was shown or hidden.

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QLineEdit *addText(QGridLayout &rows, int row, const QString &objectName, const QString &caption,
                       const QString &accessibleName);
    QAbstractButton *addBox(QLayout &row, const QString &objectName, const QString &caption);
    QAbstractButton *addButton(QGridLayout &rows, int row, int column, const QString &objectName,
                               const QString &caption);
    QTableView *makeHits();

    QLineEdit *m_text = nullptr;
    QLineEdit *m_replacement = nullptr;
    QAbstractButton *m_case = nullptr;
    QAbstractButton *m_whole = nullptr;
    QAbstractButton *m_pattern = nullptr;
    QAbstractButton *m_allTables = nullptr;
    QAbstractButton *m_bothPanes = nullptr;
    QLabel *m_count = nullptr;
    QLabel *m_note = nullptr;
    QTableView *m_hits = nullptr;
};

} // namespace qir
