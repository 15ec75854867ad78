#include "compare/keyed/KeyedOptions.h"

#include "base/Collation.h"

#include <QCheckBox>
#include <QDoubleValidator>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QVBoxLayout>

#include <algorithm>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr int typingPause = 300; // milliseconds

} // namespace

KeyedOptions::KeyedOptions(QWidget *parent)
    : QWidget(parent) {
    m_title = new QLabel;
    m_title->setObjectName(u"keyedTable"_s);
    m_title->setTextFormat(Qt::PlainText);
    QListView *key = makeList(m_key, tr("Key fields"));
    key->setObjectName(u"keyFields"_s);
    m_title->setBuddy(key);
    QListView *ignored = makeList(m_ignored, tr("Fields that are not compared"));
    ignored->setObjectName(u"keyedIgnored"_s);
    auto *ignoredTitle = new QLabel(tr("&Not compared:"));
    ignoredTitle->setBuddy(ignored);
    m_tolerance = new QLineEdit;
    m_tolerance->setObjectName(u"keyedTolerance"_s);
    m_tolerance->setAccessibleName(tr("How far numbers may be apart"));
    m_tolerance->setPlaceholderText(u"0"_s);
    auto *number = new QDoubleValidator(m_tolerance);
    number->setLocale(QLocale::c());
    number->setBottom(0);
    m_tolerance->setValidator(number);
    auto *toleranceTitle = new QLabel(tr("N&umbers up to so far apart:"));
    toleranceTitle->setBuddy(m_tolerance);
    m_case = new QCheckBox(tr("&Case does not count"));
    m_case->setObjectName(u"keyedCase"_s);
    m_blanks = new QCheckBox(tr("&Blanks do not count"));
    m_blanks->setObjectName(u"keyedBlanks"_s);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_title);
    layout->addWidget(key, 3);
    layout->addWidget(ignoredTitle);
    layout->addWidget(ignored, 2);
    layout->addWidget(toleranceTitle);
    layout->addWidget(m_tolerance);
    layout->addWidget(m_case);
    layout->addWidget(m_blanks);

    m_typed.setSingleShot(true);
    m_typed.setInterval(typingPause);
    connect(m_tolerance, &QLineEdit::textChanged, &m_typed, qOverload<>(&QTimer::start));
    connect(&m_typed, &QTimer::timeout, this, &KeyedOptions::changed);
    for (QCheckBox *box : {m_case, m_blanks})
        connect(box, &QCheckBox::toggled, this, &KeyedOptions::changed);
    connect(&m_ignored, &KeyFields::keyChanged, this, &KeyedOptions::changed);
    connect(&m_key, &KeyFields::keyChanged, this, [this] {
        Q_EMIT keyChosen(m_key.key());
        Q_EMIT changed();
    });
}

QListView *KeyedOptions::makeList(KeyFields &fields, const QString &accessibleName) {
    auto *list = new QListView;
    list->setAccessibleName(accessibleName);
    list->setModel(&fields);
    list->setUniformItemSizes(true);
    return list;
}

void KeyedOptions::setTable(const QString &name, const QStringList &common, const QStringList &others,
                            const QStringList &key) {
    const QStringList ignored = name == m_table ? m_ignored.key() : QStringList();
    m_table = name;
    m_title->setText(tr("Key of %1:").arg(name));
    m_key.setFields(common, key);
    m_ignored.setFields(common + others, ignored);
}

void KeyedOptions::proposeKey(const QString &field) {
    m_key.setFields(m_key.names(), {field});
}

void KeyedOptions::clear() {
    m_table.clear();
    m_title->setText({});
    m_key.setFields({}, {});
    m_ignored.setFields({}, {});
}

KeyedRules KeyedOptions::rules() const {
    KeyedRules rules;
    rules.key = m_key.key();
    for (const QString &name : m_ignored.key()) { // the key is compared whatever else is said
        if (std::ranges::none_of(rules.key,
                                 [&](const QString &key) { return collationKey(key) == collationKey(name); }))
            rules.ignore.append(name);
    }
    rules.tolerance.difference = std::max(QLocale::c().toDouble(m_tolerance->text()), 0.0);
    rules.tolerance.ignoreCase = m_case->isChecked();
    rules.tolerance.ignoreBlanks = m_blanks->isChecked();
    return rules;
}

} // namespace qir
