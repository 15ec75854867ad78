#include "find/search/TextAutomaton.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <array>
#include <random>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// Both say the same of each text, where there is such a table of states.
void expectAlike(const QString &pattern, const QByteArrayList &texts) {
    for (const bool matchCase : {false, true}) {
        for (const bool whole : {false, true}) {
            const auto automaton = TextAutomaton::of(pattern, {matchCase, whole});
            if (!automaton)
                return;
            const QRegularExpression expression(whole ? QRegularExpression::anchoredPattern(pattern) : pattern,
                                                matchCase ? QRegularExpression::NoPatternOption
                                                          : QRegularExpression::CaseInsensitiveOption);
            for (const QByteArray &text : texts)
                ASSERT_EQ(automaton->hits(text.constData(), static_cast<std::size_t>(text.size())),
                          expression.match(QString::fromLatin1(text)).hasMatch())
                    << qPrintable(pattern) << " in '" << text.constData() << "', case " << matchCase << ", whole "
                    << whole;
        }
    }
}

class Patterns {
public:
    explicit Patterns(unsigned seed)
        : m_random(seed) {}

    unsigned below(unsigned count) { return static_cast<unsigned>(m_random() % count); }
    /// With parts that such a table cannot tell.
    QString wider() {
        static const QStringList parts{u"\\b"_s,       u"\\B"_s,       u"\\A"_s,    u"\\z"_s,       u"\\Z"_s,
                                       u"(?=a)"_s,     u"(?!a)"_s,     u"(?<=b)"_s, u"(?<!b)"_s,    u"(a|b)\\1"_s,
                                       u"(.)\\1"_s,    u"(?<n>a.)"_s,  u"(?>a*)"_s, u"(?P<n>b)"_s,  u"b++"_s,
                                       u"(?=.*\\d)"_s, u"(a?)b\\1?"_s, u"(?!b.)"_s, u"(\\w)-\\1"_s, u"a?+"_s};
        return pattern(1) + parts.at(below(static_cast<unsigned>(parts.size()))) + pattern(1);
    }
    QString pattern(int depth) {
        QString text;
        for (unsigned part = below(4); part > 0; --part)
            text += atom(depth) + repeats();
        return below(4) == 0 ? text + u'|' + atom(depth) : text;
    }
    QByteArray text() {
        static constexpr std::array texts{"a", "b", "A", "B", "1", "7", " ", "-", "_", ".", "\n", "\r", "ab"};
        QByteArray all;
        for (unsigned part = below(6); part > 0; --part)
            all += texts.at(below(texts.size()));
        return all;
    }

private:
    QString atom(int depth) {
        static const QStringList atoms{u"a"_s,    u"b"_s,      u"A"_s,    u"1"_s, u"."_s, u"\\d"_s, u"\\W"_s,
                                       u"\\s"_s,  u"[ab]"_s,   u"[^a]"_s, u"^"_s, u"$"_s, u"\\."_s, u"[a-b1-]"_s,
                                       u"[]a]"_s, u"[^\\d]"_s, u"\\n"_s,  u"-"_s, u" "_s, u"\\-"_s};
        if (depth > 0 && below(4) == 0)
            return (below(2) == 0 ? u"("_s : u"(?:"_s) + pattern(depth - 1) + u')';
        return atoms[below(static_cast<unsigned>(atoms.size()))];
    }
    QString repeats() {
        static const QStringList all{u""_s,  u""_s,   u""_s,    u"*"_s,    u"+"_s,
                                     u"?"_s, u"*?"_s, u"{2}"_s, u"{1,}"_s, u"{0,2}"_s};
        return all[below(static_cast<unsigned>(all.size()))];
    }

    std::mt19937 m_random;
};

} // namespace

TEST(TextAutomatonTest, SaysOfRandomPatternsAndTextsWhatARegularExpressionSays) {
    Patterns patterns(17);
    int made = 0;
    for (int round = 0; round < 800; ++round) {
        const QString pattern = patterns.pattern(2);
        if (!QRegularExpression(pattern).isValid())
            continue;
        made += TextAutomaton::of(pattern, {}) ? 1 : 0;
        QByteArrayList texts;
        for (int text = 0; text < 8; ++text)
            texts.append(patterns.text());
        expectAlike(pattern, texts);
        if (HasFatalFailure())
            return;
    }
    EXPECT_GT(made, 300); // or nothing was tried
}

TEST(TextAutomatonTest, AWiderOneMissesNoMatch) {
    Patterns patterns(18);
    int made = 0;
    int without = 0;
    for (int round = 0; round < 1500; ++round) {
        const QString pattern = patterns.wider();
        for (const bool whole : {false, true}) {
            const QRegularExpression expression(whole ? QRegularExpression::anchoredPattern(pattern) : pattern,
                                                QRegularExpression::CaseInsensitiveOption);
            const auto wider = TextAutomaton::of(pattern, {.matchCase = false, .whole = whole, .wider = true});
            if (!expression.isValid() || !wider)
                continue;
            ++made;
            for (int number = 0; number < 8; ++number) {
                const QByteArray text = patterns.text();
                const bool hits = wider->hits(text.constData(), static_cast<std::size_t>(text.size()));
                without += hits ? 0 : 1;
                ASSERT_TRUE(hits || !expression.match(QString::fromLatin1(text)).hasMatch())
                    << qPrintable(pattern) << " in '" << text.constData() << "', whole " << whole;
            }
        }
    }
    EXPECT_GT(made, 1000); // or nothing was tried
    EXPECT_GT(without, 3000);
}

TEST(TextAutomatonTest, AWiderOneTellsOfMostTextsThatTheyHoldNoMatch) {
    for (const QString &pattern : {u"\\bpump\\b"_s, u"pump(?= \\d)"_s, u"(?<!no )pump"_s, u"(p)u\\1?mp"_s,
                                   u"(?<kind>pump|motor)s?"_s, u"pum++p"_s}) {
        const auto wider = TextAutomaton::of(pattern, {.matchCase = false, .whole = false, .wider = true});
        ASSERT_TRUE(wider) << qPrintable(pattern);
        EXPECT_TRUE(wider->hits("a PUMP 7", 8)) << qPrintable(pattern);
        EXPECT_FALSE(wider->hits("a valve 7", 9)) << qPrintable(pattern);
    }
    for (const QString &pattern :
         {u"(?i)a"_s, u"\\p{L}"_s, u"(?(1)a|b)"_s, u"(?R)"_s, u"\\Qa\\E"_s, u"(?#a)b"_s, u"(?1)(a)"_s})
        EXPECT_FALSE(TextAutomaton::of(pattern, {.matchCase = false, .whole = false, .wider = true}))
            << qPrintable(pattern);
}

TEST(TextAutomatonTest, TakesEachByteOfAscii) {
    for (int code = 1; code < 128; ++code) {
        const QByteArray text(1, static_cast<char>(code));
        for (const QString &pattern : {u"."_s, u"\\w"_s, u"\\s"_s, u"\\D"_s, u"[^a-z]"_s, u"[!-~]"_s, u"k"_s, u"S"_s,
                                       QRegularExpression::escape(QString::fromLatin1(text))})
            expectAlike(pattern, {text});
    }
}

TEST(TextAutomatonTest, ALastLineFeedIsPassedOverByAnEnd) {
    for (const QString &pattern : {u"a$"_s, u"^a$"_s, u"^$"_s, u"$"_s, u"a*$"_s})
        expectAlike(pattern, {"a", "a\n", "a\n\n", "\n", ""});
}

TEST(TextAutomatonTest, WhatWouldTakeLongToMakeIsLeftToOthers) {
    for (const QString &pattern : {u"(?:[ab].?.?){90}(?:[ab].?.?){90}x"_s, u"(?:.{1,9}a){40}"_s})
        for (const bool whole : {false, true})
            EXPECT_FALSE(TextAutomaton::of(pattern, {.matchCase = false, .whole = whole})) << qPrintable(pattern);
}

TEST(TextAutomatonTest, IsMadeOfWhatPeopleLookFor) {
    for (const QString &pattern :
         {u"^\\d{1,9}-[a-z]{3,20}$"_s, u"\\d{1,3}\\.\\d{1,3}\\.\\d{1,3}\\.\\d{1,3}"_s, u"(pump|valve|motor) ?\\d+"_s,
          u"[\\w.]+@[\\w.]+\\.[a-z]{2,6}"_s, u"a.*b.*c"_s, u"^\\s*$"_s, u".{100}"_s, u"^.{0,100}$"_s})
        EXPECT_TRUE(TextAutomaton::of(pattern, {})) << qPrintable(pattern);
}

TEST(TextAutomatonTest, WhatItCannotTellIsLeftToOthers) {
    for (const QString &pattern :
         {u"(a)\\1"_s, u"a(?=b)"_s, u"a++"_s, u"\\bx"_s, u"a$\\n"_s, u"[[:alpha:]]"_s, u"(?i)a"_s, u"ä"_s, u"a{200}"_s,
          u"(?<n>a)"_s, u"\\x41"_s, u"(*UCP)a"_s, u"(a|b)*a(a|b){12}"_s})
        EXPECT_FALSE(TextAutomaton::of(pattern, {})) << qPrintable(pattern);
}

} // namespace qir
