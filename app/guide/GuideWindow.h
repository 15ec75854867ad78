#pragma once

#include <QDialog>
#include <QTextCursor>

#include <vector>

QT_BEGIN_NAMESPACE
class QLineEdit;
class QTextBrowser;
class QTreeWidget;
class QTreeWidgetItem;
QT_END_NAMESPACE

namespace qir {

/// Shows the user guide beside the editor, which stays usable: its contents and a search at the left.
class GuideWindow : public QDialog {
    Q_OBJECT

public:
    explicit GuideWindow(QWidget *parent);

    void showStart();
    /// Scrolls to the section that tells of a control or of what it is in; to the page on keys when none does.
    void showPlace(const QWidget *control);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Section {
        QString heading;
        QTextCursor place; ///< From its heading to the next one.
        QTreeWidgetItem *line;
        QStringList controls; ///< Object names of what it tells of.
    };

    void fillContents(const QString &guide);
    void goTo(const Section &section);
    void follow(const QUrl &link);
    /// Marks all places of the searched text, leaves the sections that have it in the contents, goes to the first.
    void search();
    void goToNextHit();

    QLineEdit *m_search;
    QTreeWidget *m_contents;
    QTextBrowser *m_text;
    std::vector<Section> m_sections;
};

} // namespace qir
