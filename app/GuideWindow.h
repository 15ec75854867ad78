#pragma once

#include <QDialog>

QT_BEGIN_NAMESPACE
class QTextBrowser;
QT_END_NAMESPACE

namespace qir {

/// Shows the user guide beside the editor, which stays usable.
class GuideWindow : public QDialog {
    Q_OBJECT

public:
    explicit GuideWindow(QWidget *parent);

    /// Scrolls to the section with this heading; to the start when there is none.
    void showSection(const QString &heading);

private:
    QTextBrowser *m_text;
};

} // namespace qir
