#include "tests/monkey/Disturbances.h"

#include "tests/tools/fake/FakeControl.h"
#include "tests/window/EditorFixture.h"

#include <QDir>
#include <QFile>

#include <array>

namespace qir::test {

using namespace Qt::StringLiterals;

const QString MonkeyFiles::left = u"LEFT.DDB"_s;
const QString MonkeyFiles::right = u"RIGHT.WDB"_s;
const QString MonkeyFiles::locked = u"LOCKED.UDB"_s;
const QString MonkeyFiles::large = u"LARGE.IDB"_s;
const QString MonkeyFiles::password = u"monkey"_s;

namespace {

QStringList numbered(const QString &form, int count, int odd) {
    QStringList texts;
    for (int i = 1; i <= count; ++i)
        texts.append(form.arg(i % 7 == odd ? i * 10 : i));
    return texts;
}

TableOfTexts pumps(int records, int odd) {
    return {u"Pumps"_s,
            {{u"Name"_s, FieldType::Text, numbered(u"pump %1"_s, records, odd), 12},
             {u"Flow"_s, FieldType::Double, numbered(u"%1.5"_s, records, odd)},
             {u"On"_s, FieldType::Bool, QStringList(records, u"1"_s)},
             {u"Id"_s, FieldType::Long, numbered(u"%1"_s, records, odd)},
             {u"Since"_s, FieldType::Date, QStringList(records, u"20240131"_s)},
             {u"Note"_s, FieldType::Text, QStringList(records, u"checked\tand tight"_s), 40}}};
}

TableOfTexts small(const QString &name, int records) {
    return {name, {{u"A"_s, FieldType::Byte, numbered(u"%1"_s, records, 3)}, {u"B"_s, FieldType::Int, {}}}};
}

const std::array<const QString *, 4> names{&MonkeyFiles::left, &MonkeyFiles::right, &MonkeyFiles::locked,
                                           &MonkeyFiles::large};

void writeOver(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

QByteArray contents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

MonkeyFiles::MonkeyFiles() {
    const auto original = [this](const QString &name) { return m_originals.filePath(name); };
    makeDatabase(original(left), {pumps(12, 0), small(u"Valves"_s, 3), small(u"Empty"_s, 0), small(u"Left only"_s, 1)});
    makeDatabase(original(right), {pumps(9, 2), small(u"valves"_s, 3), small(u"Right only"_s, 2)});
    makeDatabase(original(locked), {pumps(4, 1), small(u"Secret"_s, 2)}, password);
    makeDatabase(original(large), {pumps(300, 4), small(u"Valves"_s, 200)});
    QDir(folder()).mkdir(u"sub"_s);
    // What the editor remembers is this run's own: recent files of others are none of the monkey's business.
    qputenv("XDG_STATE_HOME", original(u"state"_s).toUtf8());
    restoreAll();
}

void MonkeyFiles::restoreAll() const {
    for (const QString *name : names)
        restore(*name);
}

void MonkeyFiles::restore(const QString &name) const {
    QDir(path(name)).removeRecursively();
    QFile::remove(path(name));
    QFile::copy(m_originals.filePath(name), path(name));
}

QString MonkeyFiles::disturb(Numbers &numbers) {
    const QString name = *numbers.oneOf(names);
    switch (numbers.below(8)) {
    case 0: {
        const QByteArray bytes = contents(path(name));
        writeOver(path(name), bytes.left(numbers.below(static_cast<int>(bytes.size()))));
        return name + u" is cut short"_s;
    }
    case 1: {
        QByteArray bytes = contents(path(name));
        if (!bytes.isEmpty())
            bytes[numbers.below(static_cast<int>(bytes.size()))] ^= static_cast<char>(1U << (numbers.next() % 8));
        writeOver(path(name), bytes);
        return name + u" is damaged"_s;
    }
    case 2:
        QFile::remove(path(name));
        return name + u" is removed"_s;
    case 3: {
        const QString other = *numbers.oneOf(names);
        writeOver(path(name), contents(m_originals.filePath(other)));
        return u"%1 is written over with %2"_s.arg(name, other);
    }
    case 4:
        QFile::remove(path(name));
        QDir(folder()).mkdir(name);
        return name + u" becomes a folder"_s;
    default:
        restore(name);
        return name + u" is restored"_s;
    }
}

ComponentErrors::ComponentErrors(FakeControl &fake)
    : m_fake(fake) {
    fake.setLogging(false);
    fake.setHook([this](const FakeCall &call) {
        // An instance always comes and goes: what fails there is a matter of its own tests.
        if (m_paused || call.member.startsWith(u'('))
            return;
        if (m_callsLeft > 0 && --m_callsLeft == 0)
            throw std::runtime_error("the component fails at this call");
        if (call.member == m_member)
            throw std::runtime_error("the component fails at every such call");
    });
}

ComponentErrors::~ComponentErrors() {
    m_fake.reset();
}

void ComponentErrors::clear() {
    m_callsLeft = 0;
    m_member.clear();
    m_fake.setRefuseFileName(false);
    m_fake.setHideFileName(false);
}

QString ComponentErrors::order(Numbers &numbers) {
    static const QStringList members{u"LoadDtb"_s,
                                     u"SaveDtb"_s,
                                     u"DtbHasChanged"_s,
                                     u"NewPassword"_s,
                                     u"QIRTablesCount"_s,
                                     u"QIRTableName"_s,
                                     u"AddTable"_s,
                                     u"RenameTable"_s,
                                     u"RemoveTable"_s,
                                     u"QIRTableRecordSource"_s,
                                     u"QirTableFieldsCount"_s,
                                     u"QIRTableFieldName"_s,
                                     u"AddField"_s,
                                     u"RemoveField"_s,
                                     u"QirTableRecordsCount"_s,
                                     u"AddRecord"_s,
                                     u"RemoveRecord"_s,
                                     u"QIRTableRecordSetByIndex"_s,
                                     u"GetQirRecord"_s,
                                     u"BeginChanges"_s,
                                     u"EndChanges"_s};
    clear();
    const int choice = numbers.below(20);
    if (choice < 9) {
        m_callsLeft = 1 << numbers.below(9);
        return u"the component will fail at call %1"_s.arg(m_callsLeft);
    }
    if (choice < 12) {
        m_member = numbers.oneOf(members);
        return u"the component will fail at every "_s + m_member;
    }
    if (choice == 12) {
        m_fake.setRefuseFileName(true);
        return u"the component will refuse file names"_s;
    }
    if (choice == 13) {
        m_fake.setHideFileName(true);
        return u"the component will hide its file name"_s;
    }
    if (choice == 14) {
        m_fake.notice(u"a notice of the component"_s);
        return u"the component tells a notice"_s;
    }
    return u"the component works again"_s;
}

} // namespace qir::test
