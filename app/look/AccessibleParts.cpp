#include "app/look/AccessibleParts.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr auto areaName = "panes"_L1; // of the window's middle
constexpr auto sorterName = "ProSort"_L1;
constexpr auto measureName = "AutoSizeLabelTwips"_L1;
constexpr auto splitterClass = "qir::PaneSplitter"_L1;
constexpr auto stripClass = "qir::DifferenceStrip"_L1;
constexpr auto plainClass = "QWidget"_L1;

/// The window's middle, without the helpers in it.
class Area : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    int childCount() const override { return static_cast<int>(parts().size()); }
    QAccessibleInterface *child(int index) const override { return parts().value(index); }
    int indexOfChild(const QAccessibleInterface *child) const override {
        const QList<QAccessibleInterface *> all = parts();
        for (int i = 0; i < all.size(); ++i)
            if (child != nullptr && all[i]->object() == child->object())
                return i;
        return -1;
    }

private:
    QList<QAccessibleInterface *> parts() const {
        QList<QAccessibleInterface *> all;
        for (int i = 0; i < QAccessibleWidget::childCount(); ++i) {
            QAccessibleInterface *part = QAccessibleWidget::child(i);
            const QString name =
                part != nullptr && part->object() != nullptr ? part->object()->objectName() : QString();
            if (part != nullptr && name != sorterName && name != measureName)
                all.append(part);
        }
        return all;
    }
};

QAccessibleInterface *partOf(const QString &className, QObject *object) {
    auto *widget = qobject_cast<QWidget *>(object);
    if (widget == nullptr)
        return nullptr;
    if (className == splitterClass)
        return new QAccessibleWidget(widget, QAccessible::Splitter);
    if (className == stripClass)
        return new QAccessibleWidget(widget, QAccessible::Indicator);
    if (className == plainClass && widget->objectName() == areaName)
        return new Area(widget);
    return nullptr;
}

} // namespace

void installAccessibleParts() {
    QAccessible::installFactory(partOf); // which holds each of them once
}

} // namespace qir
