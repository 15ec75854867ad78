#pragma once

#include <QLabel>
#include <QtGlobal>

namespace qir {

/// The widest that a text of a dialog may be before it is wrapped: what reads well, and never more than the screen has.
int widestPrompt(const QLabel &label);

/// Makes a label draw its plain text in lines of `width` pixels, wider ones where the label gets more room: broken
/// between words and inside a word that is wider than a line, which a label by itself would never break. The label
/// asks for that width and the height that it takes. For a text that stays as it is.
void wrapWithin(QLabel &label, int width);

/// The same where a single word would be wider than widestPrompt(), in a label that wraps at words by itself.
void wrapLongWords(QLabel &label);

/// The same for a label that would be wider than widestPrompt(); others stay as they are.
void wrapWhenTooWide(QLabel &label);

/// The same for any label, which asks for no more width than its text takes.
void wrapAsWide(QLabel &label);

/// A label that wraps its plain text so in whatever width it gets, and asks for the height that this takes.
class WrappedLabel : public QLabel {
    Q_OBJECT

public:
    explicit WrappedLabel(QWidget *parent = nullptr);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

} // namespace qir
