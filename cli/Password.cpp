#include "cli/Password.h"

#include "base/ArgumentTexts.h"
#include "base/FileOps.h"
#include "cli/FileError.h"
#include "cli/tables/TextTable.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr std::size_t longestLine = 4096; // bytes; one that is longer is a mistake
constexpr qsizetype longestTyped = 255;   // UTF-16 code units that the editor's box for a password keeps

/// Bytes of a password on their way, overwritten at the end.
struct Line {
    std::array<char, longestLine> bytes{};
    std::size_t size = 0;

    Line() = default;
    Line(const Line &) = delete;
    Line &operator=(const Line &) = delete;
    ~Line() { explicit_bzero(bytes.data(), bytes.size()); }

    SecretText text() const { return SecretText(QString::fromUtf8(bytes.data(), static_cast<qsizetype>(size))); }
};

enum class LineEnd { Complete, EndOfInput, TooLong, Failed };

// Byte by byte: what follows the line belongs to others, and no buffer keeps a copy.
LineEnd readLine(int input, Line &line) {
    while (true) {
        char byte = 0;
        const ssize_t count = ::read(input, &byte, 1);
        if (count < 0)
            return LineEnd::Failed;
        if (count == 0)
            return LineEnd::EndOfInput;
        if (byte == '\n')
            break;
        if (line.size == line.bytes.size())
            return LineEnd::TooLong;
        line.bytes[line.size++] = byte;
    }
    if (line.size > 0 && line.bytes[line.size - 1] == '\r')
        --line.size;
    return LineEnd::Complete;
}

volatile std::sig_atomic_t caughtSignal = 0;

void noteSignal(int number) {
    caughtSignal = number;
}

/// The terminal without echo; signals only end the reading, and take effect once the echo is back.
class SilentTerminal {
public:
    explicit SilentTerminal(int terminal)
        : m_terminal(terminal) {
        caughtSignal = 0;
        struct sigaction action {};
        action.sa_handler = noteSignal; // no SA_RESTART: the reading ends
        for (std::size_t i = 0; i < signals.size(); ++i)
            ::sigaction(signals[i], &action, &m_actions[i]);
        m_silenced = ::tcgetattr(terminal, &m_before) == 0;
        if (m_silenced) {
            termios silent = m_before;
            silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            m_silenced = ::tcsetattr(terminal, TCSAFLUSH, &silent) == 0;
        }
    }
    ~SilentTerminal() {
        if (m_silenced)
            ::tcsetattr(m_terminal, TCSAFLUSH, &m_before);
        for (std::size_t i = 0; i < signals.size(); ++i)
            ::sigaction(signals[i], &m_actions[i], nullptr);
        if (caughtSignal != 0)
            ::raise(caughtSignal);
    }
    SilentTerminal(const SilentTerminal &) = delete;
    SilentTerminal &operator=(const SilentTerminal &) = delete;
    bool isSilent() const { return m_silenced; }

private:
    static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};
    int m_terminal;
    bool m_silenced = false;
    termios m_before{};
    std::array<struct sigaction, signals.size()> m_actions{};
};

} // namespace

SecretText readPasswordFile(const QString &file) {
    FileOps &system = FileOps::system();
    const auto opened = OpenFile::openAt(system, AT_FDCWD, systemPath(file), O_RDONLY);
    if (!opened)
        throw FileError(file, systemErrorWords(opened.error()));
    Line line;
    switch (readLine(opened->descriptor(), line)) {
    case LineEnd::Failed:
        throw FileError(file, systemErrorWords({errno}));
    case LineEnd::TooLong:
        throw FileError(file, u"its first line is too long for a password"_s);
    case LineEnd::Complete:
    case LineEnd::EndOfInput:
        break;
    }
    return line.text();
}

SecretText askPassword(const QString &prompt, const QString &note) {
    FileOps &system = FileOps::system();
    const auto opened = OpenFile::openAt(system, AT_FDCWD, "/dev/tty", O_RDWR);
    if (!opened)
        throw std::runtime_error("there is no terminal to ask for the password; use --password-file");
    const int terminal = opened->descriptor();
    Line line;
    LineEnd end = LineEnd::Failed;
    {
        const SilentTerminal silent(terminal);
        if (!silent.isSilent())
            throw std::runtime_error("the terminal would show the password; use --password-file");
        const QString noteLine = note.isEmpty() ? QString() : printableText(note) + u'\n';
        (void)writeFully(system, terminal, (noteLine + printableText(prompt)).toUtf8());
        end = readLine(terminal, line);
        (void)writeFully(system, terminal, "\n");
    }
    if (end != LineEnd::Complete)
        throw std::runtime_error("no password was given");
    return line.text();
}

SecretText givenPassword(const std::string &passwordFile, const QString &prompt, const QString &note) {
    return passwordFile.empty() ? askPassword(prompt, note)
                                : readPasswordFile(argumentText(QByteArrayView(passwordFile)));
}

std::optional<QString> newPasswordProblem(QStringView password) {
    if (password.isEmpty())
        return u"the new password is empty; use --remove to leave the file open to everybody"_s;
    if (password.size() > longestTyped)
        return u"the new password is longer than %1 characters; the editor could not open the file with it"_s.arg(
            longestTyped);
    if (password.endsWith(u' '))
        return u"the new password ends with a blank; the editor could not change it again"_s;
    const bool typable = std::ranges::none_of(password, [](QChar unit) {
        return unit.category() == QChar::Other_Control || unit == QChar::ReplacementCharacter;
    });
    if (!typable)
        return u"the new password holds something that is no text, or that nobody can type"_s;
    return std::nullopt;
}

} // namespace qir
