#pragma once

#include <QFrame>

#include <array>

QT_BEGIN_NAMESPACE
class QPushButton;
QT_END_NAMESPACE

namespace qir {

class WrappedLabel;

/// What has happened to a pane's file from outside, and what can be done about it. Closing it decides nothing.
class NoticeBar : public QFrame {
    Q_OBJECT

public:
    enum Button { Reload, Keep, Compare, Dismiss };

    NoticeBar(QWidget *parent, int pane);

    /// Shows what happened to the file at a path (%1 in `text`) with these buttons beside the closing one; its own
    /// screen reader is told.
    void tell(const QString &text, const QString &path, const QList<Button> &buttons);
    /// The whole of it, though a long path be shown without its middle.
    const QString &text() const { return m_told; }

    /// Text and buttons in as many lines as they take; 0 while it is hidden.
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void pressed(qir::NoticeBar::Button button);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Gives each button its place in a width, with `top` as the first line's, and the height that they take.
    int placeButtons(int width, int top, bool move) const;

    QString m_told;
    WrappedLabel *m_text;
    std::array<QPushButton *, 4> m_buttons{};
};

} // namespace qir
