#include "cli/edit/ScriptWords.h"

using namespace Qt::StringLiterals;

namespace qir {

namespace {

class ScriptReading {
public:
    explicit ScriptReading(const QString &text)
        : m_text(text) {}

    Result<std::vector<ScriptLine>> read() {
        while (m_at < m_text.size()) {
            const QChar unit = next();
            if (unit == u'\n')
                endLine();
            else if (unit == u' ' || unit == u'\t' || unit == u'\r')
                endWord();
            else if (unit == u'#' && !m_inWord)
                skipComment();
            else if (!takePart(unit))
                return failure(u"line %1: a quote is not closed"_s.arg(m_quoteLine));
        }
        endLine();
        return std::move(m_lines);
    }

private:
    QChar next() {
        const QChar unit = m_text[m_at++];
        if (unit == u'\n')
            ++m_line;
        return unit;
    }

    /// A part of a word that begins with this character. False where its quote has no end.
    bool takePart(QChar unit) {
        if (unit == u'\\' && m_at < m_text.size()) {
            if (const QChar escaped = next(); escaped != u'\n') {
                beginWord();
                m_word += escaped;
            }
            return true;
        }
        beginWord();
        if (unit == u'\'' || unit == u'"')
            return takeQuoted(unit);
        m_word += unit;
        return true;
    }

    bool takeQuoted(QChar quote) {
        m_quoteLine = m_line;
        while (m_at < m_text.size()) {
            const QChar unit = next();
            if (unit == quote)
                return true;
            const bool escapes = quote == u'"' && unit == u'\\' && m_at < m_text.size();
            if (escapes && m_text[m_at] == u'\n')
                next();
            else if (escapes && u"\"\\$`"_s.contains(m_text[m_at]))
                m_word += next();
            else
                m_word += unit;
        }
        return false;
    }

    void skipComment() {
        while (m_at < m_text.size() && m_text[m_at] != u'\n')
            ++m_at;
    }

    void beginWord() {
        if (m_words.isEmpty() && !m_inWord)
            m_firstLine = m_line;
        m_inWord = true;
    }
    void endWord() {
        if (m_inWord)
            m_words.append(std::exchange(m_word, QString()));
        m_inWord = false;
    }
    void endLine() {
        endWord();
        if (!m_words.isEmpty())
            m_lines.push_back({m_firstLine, std::exchange(m_words, QStringList())});
    }

    const QString &m_text;
    qsizetype m_at = 0;
    int m_line = 1;
    int m_firstLine = 1;
    int m_quoteLine = 1;
    bool m_inWord = false;
    QString m_word;
    QStringList m_words;
    std::vector<ScriptLine> m_lines;
};

} // namespace

Result<std::vector<ScriptLine>> scriptLines(const QString &text) {
    return ScriptReading(text).read();
}

} // namespace qir
