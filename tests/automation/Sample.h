#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <stdexcept>

/// An object with members of every shape that the convention knows, and of some that it does not.
class Sample : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool Flag MEMBER flag)
    Q_PROPERTY(int Count READ count)
    Q_PROPERTY(QVariant Loose MEMBER loose)
    Q_PROPERTY(double Wide MEMBER wide)
    Q_PROPERTY(int Narrow MEMBER narrow)
    Q_PROPERTY(QString Words MEMBER words)
    Q_PROPERTY(qlonglong Huge MEMBER huge)

public:
    ~Sample() override {
        if (destroyedFlag)
            *destroyedFlag = true;
    }
    int count() const { return 7; }

    Q_INVOKABLE QString Join(const QString &left, int right) { return left + QString::number(right); }
    Q_INVOKABLE QVariant LooseJoin(const QVariant &left, const QVariant &right) {
        last = {left, right};
        return left.toString() + right.toString();
    }
    Q_INVOKABLE void Fill(int record, QStringList &values) { values = {QString(), QString::number(record)}; }
    Q_INVOKABLE void FillByValue(int, QStringList) {}
    Q_INVOKABLE int Default(const QString &text, int type, double size = 50) {
        last = {text, type, size};
        return static_cast<int>(last.size());
    }
    Q_INVOKABLE QVariant Indexed(int index) { return index == indexed ? value : QVariant(); }
    Q_INVOKABLE void Indexed(int index, const QVariant &newValue) {
        indexed = index;
        value = newValue;
    }
    Q_INVOKABLE void Fail() { throw std::out_of_range("no such pump"); }
    Q_INVOKABLE double Half(int number) { return number / 2.0; }
    Q_INVOKABLE int Whole(double number) { return static_cast<int>(number); }
    Q_INVOKABLE uchar Small(uchar number) { return number; }
    Q_INVOKABLE QVariant Nothing() { return QVariant(); }
    Q_INVOKABLE QVariant Echo(const QVariant &given) { return given; }
    Q_INVOKABLE QStringList List() { return {}; }
    Q_INVOKABLE bool IsTrue() { return true; }
    Q_INVOKABLE int Which(int) { return 1; }
    Q_INVOKABLE int Which(const QString &) { return 2; }
    Q_INVOKABLE int Which(const QVariant &) { return 3; }
    Q_INVOKABLE virtual int Version() { return 1; }

    bool flag = false;
    QVariant loose;
    double wide = 0;
    int narrow = 0;
    QString words;
    qlonglong huge = 0;
    QVariantList last;
    int indexed = 0;
    QVariant value;
    bool *destroyedFlag = nullptr;

public Q_SLOTS:
    int Slot() { return 11; }

Q_SIGNALS:
    void Signal();
};

class Derived : public Sample {
    Q_OBJECT

public:
    Q_INVOKABLE int Version() override { return 2; }
    Q_INVOKABLE QString Which(int) { return QStringLiteral("derived"); }
};
