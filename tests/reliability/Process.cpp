#include "tests/reliability/Process.h"

#include <QDir>

#include <grp.h>
#include <sys/vfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

constexpr uid_t nobody = 65534;
constexpr long ext4Type = 0xEF53;
constexpr long tmpfsType = 0x01021994;

long typeOf(const QString &folder) {
    struct statfs status {};
    return ::statfs(QFile::encodeName(folder).constData(), &status) == 0 ? static_cast<long>(status.f_type) : 0;
}

} // namespace

unsigned runAsOrdinaryUser() {
    if (::geteuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
                             ::setresuid(nobody, nobody, nobody) != 0))
        throw std::runtime_error("cannot become an ordinary user");
    return ::geteuid();
}

Process::Process(const std::function<void(const Tell &tell)> &body) {
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    std::fflush(nullptr);
    m_process = ::fork();
    if (m_process < 0)
        throw std::runtime_error("no process");
    if (m_process > 0) {
        ::close(ends[1]);
        m_pipe = ends[0];
        return;
    }
    ::close(ends[0]);
    int status = 1;
    try {
        body([&](QByteArrayView bytes) {
            if (::write(ends[1], bytes.data(), static_cast<std::size_t>(bytes.size())) != bytes.size())
                ::_exit(2);
        });
        status = 0;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "a process of the test failed: %s\n", error.what());
    }
    std::fflush(nullptr);
    ::_exit(status);
}

Process::Process(Process &&other) noexcept
    : m_process(std::exchange(other.m_process, -1))
    , m_pipe(std::exchange(other.m_pipe, -1))
    , m_told(std::move(other.m_told)) {}

Process::~Process() {
    kill();
}

bool Process::hear() {
    char bytes[4096];
    const ssize_t count = ::read(m_pipe, bytes, sizeof bytes);
    if (count > 0)
        m_told.append(bytes, count);
    return count > 0;
}

bool Process::reap() {
    while (m_pipe >= 0 && hear()) {
    }
    if (m_pipe >= 0)
        ::close(std::exchange(m_pipe, -1));
    if (m_process < 0)
        return false;
    int status = 0;
    ::waitpid(std::exchange(m_process, -1), &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void Process::kill() {
    if (m_process > 0)
        ::kill(m_process, SIGKILL);
    (void)reap();
}

bool Process::finish() {
    return reap();
}

PlaceFolder::PlaceFolder(Place place)
    : m_folder((place == Place::Memory ? u"/dev/shm"_s : QDir::tempPath()) + u"/qir-reliability-XXXXXX"_s) {
    if (!m_folder.isValid())
        m_missing = u"no folder can be made there"_s;
    else if (typeOf(m_folder.path()) != (place == Place::Memory ? tmpfsType : ext4Type))
        m_missing = place == Place::Memory ? u"there is no tmpfs at /dev/shm"_s
                                           : u"the folder for temporary files is not on ext4"_s;
}

} // namespace qir
