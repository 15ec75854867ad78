#include "app/look/LineIcon.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto drawnColour = "#000000"; // of the lines in the files
constexpr auto format = "svg";

class LineIconEngine : public QIconEngine {
public:
    explicit LineIconEngine(const QByteArray &drawing)
        : m_drawing(drawing) {}

    QIconEngine *clone() const override { return new LineIconEngine(*this); }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override {
        const qreal ratio = painter->device() != nullptr ? painter->device()->devicePixelRatioF() : 1.0;
        painter->drawImage(rect, draw(rect.size() * ratio, mode));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override {
        return QPixmap::fromImage(draw(size, mode));
    }

private:
    QImage draw(const QSize &size, QIcon::Mode mode) const {
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor colour = QApplication::palette().color(group, QPalette::ButtonText);
        QByteArray coloured = QByteArray(m_drawing).replace(drawnColour, colour.name().toLatin1());
        QBuffer buffer(&coloured);
        QImageReader reader(&buffer, format);
        reader.setScaledSize(size);
        return reader.read();
    }

    QByteArray m_drawing;
};

} // namespace

QIcon lineIcon(const QString &name) {
    if (!QImageReader::supportedImageFormats().contains(format))
        return {}; // Qt's module for such drawings is missing: a button shows its text then
    QFile file(u":/icons/%1.svg"_s.arg(name));
    return file.open(QIODevice::ReadOnly) ? QIcon(new LineIconEngine(file.readAll())) : QIcon();
}

} // namespace qir
