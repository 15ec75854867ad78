#pragma once

#include <QLabel>

#include <functional>

namespace qir {

/// A label for a file name: one that is too long for its place is shown with its middle left out, so that its end
/// stays readable, and in full as a tool tip. text() is always the whole name. Behind it stand signs.
class FileNameLabel : public QLabel {
    Q_OBJECT

public:
    explicit FileNameLabel(QWidget *parent)
        : QLabel(parent) {}

    /// Small pictures behind the name: what there is to know of the file.
    struct Signs {
        bool unsaved = false;     ///< A dot.
        bool isProtected = false; ///< A padlock.
        bool readOnly = false;    ///< A pencil struck out.
        friend bool operator==(const Signs &, const Signs &) = default;
    };

    const Signs &signs() const { return m_signs; }
    void setSigns(const Signs &signs);
    /// What the tool tip says besides a name that is cut, asked for when it is to show.
    void setDetails(std::function<QString()> details) { m_details = std::move(details); }

    /// A long name asks for no more room than is there.
    QSize minimumSizeHint() const override;

    bool event(QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool isCut() const;
    QRect nameRect() const;

    Signs m_signs;
    std::function<QString()> m_details;
};

} // namespace qir
