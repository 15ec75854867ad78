#include "view/TextAutomaton.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <array>
#include <random>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

bool says(const QString &pattern, TextAutomaton::Options options, const QByteArray &text) {
    const QRegularExpression expression(options.whole ? QRegularExpression::anchoredPattern(pattern) : pattern,
                                        options.matchCase ? QRegularExpression::NoPatternOption
                                                          : QRegularExpression::CaseInsensitiveOption);
    return expression.match(QString::fromLatin1(text)).hasMatch();
}

void expectAlike(const QString &pattern, const QByteArray &text) {
    for (const bool matchCase : {false, true}) {
        for (const bool whole : {false, true}) {
            const TextAutomaton::Options options{matchCase, whole};
            const auto automaton = TextAutomaton::of(pattern, options);
            if (!automaton)
                continue;
            ASSERT_EQ(automaton->hits(text.constData(), static_cast<std::size_t>(text.size())),
                      says(pattern, options, text))
                << qPrintable(pattern) << " in '" << text.constData() << "', case " << matchCase << ", whole " << whole;
        }
    }
}

class Patterns {
public:
    explicit Patterns(unsigned seed)
        : m_random(seed) {}

    unsigned below(unsigned count) { return static_cast<unsigned>(m_random() % count); }
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
        for (int text = 0; text < 8; ++text)
            expectAlike(pattern, patterns.text());
        if (HasFatalFailure())
            return;
    }
    EXPECT_GT(made, 300); // or nothing was tried
}

TEST(TextAutomatonTest, TakesEachByteOfAscii) {
    for (int code = 1; code < 128; ++code) {
        const QByteArray text(1, static_cast<char>(code));
        for (const QString &pattern : {u"."_s, u"\\w"_s, u"\\s"_s, u"\\D"_s, u"[^a-z]"_s, u"[!-~]"_s, u"k"_s, u"S"_s,
                                       QRegularExpression::escape(QString::fromLatin1(text))})
            expectAlike(pattern, text);
    }
}

TEST(TextAutomatonTest, ALastLineFeedIsPassedOverByAnEnd) {
    for (const char *text : {"a", "a\n", "a\n\n", "\n", ""})
        for (const QString &pattern : {u"a$"_s, u"^a$"_s, u"^$"_s, u"$"_s, u"a*$"_s})
            expectAlike(pattern, text);
}

TEST(TextAutomatonTest, WhatItCannotTellIsLeftToOthers) {
    for (const QString &pattern :
         {u"(a)\\1"_s, u"a(?=b)"_s, u"a++"_s, u"\\bx"_s, u"a$\\n"_s, u"[[:alpha:]]"_s, u"(?i)a"_s, u"ä"_s, u"a{200}"_s,
          u"(?<n>a)"_s, u"\\x41"_s, u"(*UCP)a"_s, u"(a|b)*a(a|b){12}"_s})
        EXPECT_FALSE(TextAutomaton::of(pattern, {})) << qPrintable(pattern);
}

} // namespace qir
