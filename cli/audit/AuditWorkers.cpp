#include "cli/audit/AuditWorkers.h"

#include "base/ErrorWords.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <iterator>
#include <map>
#include <memory>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

[[noreturn]] void failSystem(const char *call) {
    throw std::system_error(errno, std::generic_category(), call);
}

bool sendAll(int socket, const char *bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t sent = ::send(socket, bytes, size, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        bytes += sent;
        size -= static_cast<std::size_t>(sent);
    }
    return true;
}

/// In the worker: the numbers of files come in, a line of JSON for each goes out.
void serve(int socket, const std::vector<AuditFile> &files, const std::function<AuditWork()> &prepare) {
    AuditWork work;
    QString unprepared;
    try {
        work = prepare();
    } catch (const std::exception &error) {
        unprepared = errorWords(error);
    }
    std::uint32_t number = 0;
    while (::recv(socket, &number, sizeof number, MSG_WAITALL) == ssize_t{sizeof number}) {
        const auto &[file, trouble] = files[number];
        QByteArray line;
        try {
            const QString &known = trouble.isEmpty() ? unprepared : trouble;
            line = (known.isEmpty() ? work(file) : AuditResult::trouble(file, known)).json();
        } catch (const std::exception &error) {
            line = AuditResult::trouble(file, errorWords(error)).json();
        }
        if (!sendAll(socket, line.constData(), static_cast<std::size_t>(line.size())))
            return;
    }
}

/// A process that works on one file after the other.
class Worker {
public:
    Worker(const std::vector<AuditFile> &files, const std::function<AuditWork()> &prepare) {
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
            failSystem("socketpair");
        m_process = ::fork();
        if (m_process < 0)
            failSystem("fork");
        if (m_process == 0) {
            ::close(ends[0]);
            serve(ends[1], files, prepare);
            ::_exit(0);
        }
        ::close(ends[1]);
        m_socket = ends[0];
    }
    ~Worker() {
        // Workers that were forked later have this end too: closing it alone would tell the other end nothing.
        ::shutdown(m_socket, SHUT_RDWR);
        ::close(m_socket);
        while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    Worker(const Worker &) = delete;
    Worker &operator=(const Worker &) = delete;

    int socket() const { return m_socket; }
    bool isBusy() const { return m_file >= 0; }
    qsizetype file() const { return m_file; }

    /// False where the process is no more.
    bool give(qsizetype file) {
        m_file = file;
        const auto number = static_cast<std::uint32_t>(file);
        return sendAll(m_socket, reinterpret_cast<const char *>(&number), sizeof number);
    }
    /// The line for the file, once it is whole; nothing before. False where the process has ended.
    bool receive(QByteArray &line) {
        char bytes[65536];
        const ssize_t count = ::recv(m_socket, bytes, sizeof bytes, 0);
        if (count < 0 && errno == EINTR)
            return true;
        if (count <= 0)
            return false;
        m_bytes.append(bytes, count);
        if (m_bytes.endsWith('\n')) {
            line = std::exchange(m_bytes, QByteArray());
            m_file = -1;
        }
        return true;
    }

private:
    pid_t m_process = -1;
    int m_socket = -1;
    qsizetype m_file = -1;
    QByteArray m_bytes;
};

class Pool {
public:
    Pool(const std::vector<AuditFile> &files, const std::function<AuditWork()> &prepare,
         const std::function<void(const AuditResult &result)> &take)
        : m_files(files)
        , m_prepare(prepare)
        , m_take(take) {}

    void run(int processes) {
        const auto count = std::min<qsizetype>(processes, std::ssize(m_files));
        for (qsizetype i = 0; i < count; ++i)
            m_workers.push_back(std::make_unique<Worker>(m_files, m_prepare));
        for (std::unique_ptr<Worker> &worker : m_workers)
            giveNext(worker);
        while (m_taken < std::ssize(m_files))
            wait();
    }

private:
    void giveNext(std::unique_ptr<Worker> &worker) {
        // One that died between two files has read nothing of this one.
        bool isNew = false;
        while (m_given < std::ssize(m_files) && !worker->give(m_given)) {
            if (isNew) {
                done(m_given, died(m_given));
                ++m_given;
            }
            worker = std::make_unique<Worker>(m_files, m_prepare);
            isNew = true;
        }
        if (m_given < std::ssize(m_files))
            ++m_given;
    }

    void wait() {
        std::vector<pollfd> polls;
        for (const std::unique_ptr<Worker> &worker : m_workers)
            polls.push_back({worker->isBusy() ? worker->socket() : -1, POLLIN, 0});
        if (::poll(polls.data(), polls.size(), -1) < 0 && errno != EINTR)
            failSystem("poll");
        for (std::size_t i = 0; i < polls.size(); ++i)
            if (polls[i].revents != 0)
                receive(m_workers[i]);
    }

    void receive(std::unique_ptr<Worker> &worker) {
        const qsizetype file = worker->file();
        QByteArray line;
        if (!worker->receive(line)) {
            done(file, died(file));
            worker = std::make_unique<Worker>(m_files, m_prepare);
            giveNext(worker);
        } else if (!line.isEmpty()) {
            const Result<AuditResult> result = AuditResult::ofJson(line);
            done(file, result
                           ? *result
                           : AuditResult::trouble(m_files[static_cast<std::size_t>(file)].name, result.error().text));
            giveNext(worker);
        }
    }

    AuditResult died(qsizetype file) const {
        return AuditResult::trouble(m_files[static_cast<std::size_t>(file)].name,
                                    u"the process that read it has died"_s);
    }

    /// Results go on in the order of the files.
    void done(qsizetype file, const AuditResult &result) {
        m_results.emplace(file, result);
        for (auto next = m_results.find(m_taken); next != m_results.end(); next = m_results.find(m_taken)) {
            m_take(next->second);
            m_results.erase(next);
            ++m_taken;
        }
    }

    const std::vector<AuditFile> &m_files;
    const std::function<AuditWork()> &m_prepare;
    const std::function<void(const AuditResult &result)> &m_take;
    std::vector<std::unique_ptr<Worker>> m_workers;
    std::map<qsizetype, AuditResult> m_results;
    qsizetype m_given = 0;
    qsizetype m_taken = 0;
};

} // namespace

void auditInParallel(const std::vector<AuditFile> &files, int processes, const std::function<AuditWork()> &prepare,
                     const std::function<void(const AuditResult &result)> &take) {
    Pool(files, prepare, take).run(processes);
}

} // namespace qir
