#pragma once

#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QAbstractItemView>
#include <QDialog>
#include <QLabel>
#include <QPushButton>

namespace qir::test {

/// What tests of a window beside the main one have in common: finding it and its controls by their names.
class BesideWindowTest : public WindowTest {
protected:
    explicit BesideWindowTest(QString name)
        : m_name(std::move(name)) {}

    /// Null before it was opened first.
    QDialog *window(EditorFixture &fixture) const { return fixture.window().findChild<QDialog *>(m_name); }
    template<class T>
    T &control(EditorFixture &fixture, const QString &name) const {
        return *window(fixture)->findChild<T *>(name);
    }
    QString textOf(EditorFixture &fixture, const QString &label) const {
        return control<QLabel>(fixture, label).text();
    }
    /// The texts of a view, row by row.
    QList<QStringList> rowsOf(EditorFixture &fixture, const QString &view) const {
        return textsOf(*control<QAbstractItemView>(fixture, view).model());
    }
    void push(EditorFixture &fixture, const QString &button) const {
        hands::click(&control<QPushButton>(fixture, button), Qt::LeftButton);
    }

private:
    QString m_name;
};

} // namespace qir::test
