#include "tests/window/LayoutCheck.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QStringList>
#include <QWidget>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

QString described(const QWidget &widget) {
    const QRect place = widget.geometry();
    return u"%1 (%2 at %3,%4 %5x%6)"_s.arg(widget.objectName(), QLatin1StringView(widget.metaObject()->className()))
        .arg(place.x())
        .arg(place.y())
        .arg(place.width())
        .arg(place.height());
}

/// A control whose text would be cut off.
QString textProblem(const QWidget &widget) {
    QSize needed;
    if (const auto *label = qobject_cast<const QLabel *>(&widget))
        needed = QSize(0, label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height());
    else if (qobject_cast<const QAbstractButton *>(&widget) != nullptr)
        needed = widget.minimumSizeHint();
    else if (qobject_cast<const QLineEdit *>(&widget) != nullptr)
        needed = QSize(0, widget.minimumSizeHint().height());
    else if (const auto *bar = qobject_cast<const QProgressBar *>(&widget))
        needed = QSize(0, bar->isTextVisible() ? bar->minimumSizeHint().height() : 1);
    if (widget.width() >= needed.width() && widget.height() >= needed.height())
        return {};
    return u"%1 needs %2x%3"_s.arg(described(widget)).arg(needed.width()).arg(needed.height());
}

/// A list leaves room for its filter line beside its lines and its scroll bar.
bool standsInMargin(const QWidget &filter, const QWidget &list) {
    const auto *area = qobject_cast<const QAbstractScrollArea *>(&list);
    if (area == nullptr || !filter.objectName().startsWith(u"tableFilter_"))
        return false;
    const QRect place = filter.geometry().translated(-list.pos());
    const QScrollBar &bar = *area->verticalScrollBar();
    const QRect barPlace(bar.mapTo(&list, QPoint()), bar.size());
    return list.rect().contains(place) && !place.intersects(area->viewport()->geometry()) &&
           !(bar.isVisible() && place.intersects(barPlace));
}

void collect(const QWidget &parent, QStringList &problems) {
    QList<QWidget *> controls;
    for (QWidget *child : parent.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        if (child->isVisible() && !child->isWindow() && !child->objectName().startsWith(u"qt_") &&
            !child->objectName().startsWith(u"ground_")) // lies under others by its nature
            controls.append(child);
    for (qsizetype i = 0; i < controls.size(); ++i) {
        const QWidget &control = *controls[i];
        if (!parent.rect().contains(control.geometry()))
            problems.append(described(control) + u" reaches outside "_s + described(parent));
        problems.append(textProblem(control));
        for (qsizetype k = i + 1; k < controls.size(); ++k)
            if (control.geometry().intersects(controls[k]->geometry()) && !standsInMargin(control, *controls[k]) &&
                !standsInMargin(*controls[k], control))
                problems.append(described(control) + u" overlaps "_s + described(*controls[k]));
        // Inside a control that scrolls, things are meant to reach outside.
        if (!control.inherits("QAbstractScrollArea") && !control.inherits("QMenuBar"))
            collect(control, problems);
    }
}

} // namespace

QString layoutProblems(const QWidget &window) {
    QStringList problems;
    collect(window, problems);
    problems.removeAll(QString());
    return problems.join(u'\n');
}

} // namespace qir::test
