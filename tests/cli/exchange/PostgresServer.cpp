#include "tests/cli/exchange/PostgresServer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <poll.h>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// Where the server's programs are: Debian keeps them out of the way.
QString serverPrograms() {
    const QString found = QStandardPaths::findExecutable(u"initdb"_s);
    if (!found.isEmpty())
        return QFileInfo(found).path();
    const QDir versions(u"/usr/lib/postgresql"_s);
    for (const QString &version : versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::Reversed))
        if (QFile::exists(versions.filePath(version + u"/bin/initdb"_s)))
            return versions.filePath(version + u"/bin"_s);
    return {};
}

sockaddr_un addressOf(const QString &file) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(file);
    EXPECT_LT(static_cast<std::size_t>(name.size()), sizeof address.sun_path);
    std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
    return address;
}

} // namespace

PostgresServer::PostgresServer()
    : m_programs(serverPrograms()) {
    if (m_programs.isEmpty() || QStandardPaths::findExecutable(u"psql"_s).isEmpty()) {
        m_missing = u"there is no PostgreSQL server"_s;
        return;
    }
    if (::geteuid() == 0) { // the server refuses to run as root
        const passwd *user = ::getpwnam("nobody");
        m_user = u"nobody"_s;
        if (user == nullptr || QStandardPaths::findExecutable(u"runuser"_s).isEmpty() ||
            ::chown(QFile::encodeName(m_folder.path()).constData(), user->pw_uid, user->pw_gid) != 0) {
            m_missing = u"there is no other user to run the server as"_s;
            return;
        }
    }
    if (!run(u"initdb"_s, {u"-D"_s, m_folder.filePath(u"data"_s), u"-U"_s, u"qir"_s, u"-A"_s, u"trust"_s, u"-E"_s,
                           u"UTF8"_s, u"--locale=C"_s, u"--no-sync"_s})) {
        m_missing = u"initdb failed"_s;
        return;
    }
    start();
}

PostgresServer::~PostgresServer() {
    if (m_missing.isEmpty())
        kill();
}

bool PostgresServer::run(const QString &program, const QStringList &arguments) const {
    QProcess process;
    process.setWorkingDirectory(u"/"_s);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    const QString path = m_programs + u'/' + program;
    if (m_user.isEmpty())
        process.start(path, arguments);
    else
        process.start(u"runuser"_s, QStringList{u"-u"_s, m_user, u"--"_s, path} + arguments);
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

void PostgresServer::start() {
    if (!run(u"pg_ctl"_s, {u"-D"_s, m_folder.filePath(u"data"_s), u"-w"_s, u"-l"_s, m_folder.filePath(u"log"_s),
                           u"-o"_s, u"-k %1 -c listen_addresses= -c fsync=off"_s.arg(m_folder.path()), u"start"_s}))
        m_missing = u"the server did not start"_s;
}

void PostgresServer::kill() {
    (void)run(u"pg_ctl"_s, {u"-D"_s, m_folder.filePath(u"data"_s), u"-w"_s, u"-m"_s, u"immediate"_s, u"stop"_s});
}

QString PostgresServer::connection(const QString &user) const {
    return u"host=%1 dbname=postgres user=%2"_s.arg(m_folder.path(), user);
}

QByteArray PostgresServer::psql(const QStringList &arguments) const {
    QProcess process;
    process.start(u"psql"_s, QStringList{u"-X"_s, u"-q"_s, u"-A"_s, u"-t"_s, u"-v"_s, u"ON_ERROR_STOP=1"_s, u"-d"_s,
                                         connection()} +
                                 arguments);
    EXPECT_TRUE(process.waitForFinished(-1));
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput();
}

QByteArray PostgresServer::ask(const QString &sql) const {
    return psql({u"-c"_s, sql});
}

QByteArray PostgresServer::load(const QString &file, const QString &schema) const {
    return psql(
        {u"-c"_s, u"CREATE SCHEMA %1"_s.arg(schema), u"-c"_s, u"SET search_path = %1"_s.arg(schema), u"-f"_s, file});
}

struct DyingServer::Relay {
    PostgresServer &server;
    qint64 rest;
    QTemporaryDir folder = QTemporaryDir();
    int listening = -1;
    std::thread thread = {};

    void work() {
        const int client = ::accept(listening, nullptr, nullptr);
        const int other = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const sockaddr_un address = addressOf(server.socketFile());
        if (client >= 0 && ::connect(other, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
            relay(client, other);
        server.kill();
        ::close(client);
        ::close(other);
    }
    /// Until a side has ended or the client has said enough.
    void relay(int client, int other) {
        std::array<pollfd, 2> ends{pollfd{client, POLLIN, 0}, pollfd{other, POLLIN, 0}};
        std::array<char, 4096> bytes{};
        while (::poll(ends.data(), ends.size(), -1) > 0) {
            for (std::size_t side = 0; side < ends.size(); ++side) {
                if (ends[side].revents == 0)
                    continue;
                const ssize_t count = ::read(ends[side].fd, bytes.data(), bytes.size());
                if (count <= 0 || ::write(ends[1 - side].fd, bytes.data(), static_cast<std::size_t>(count)) != count)
                    return;
                if (side == 0 && (rest -= count) <= 0)
                    return;
            }
        }
    }
};

DyingServer::DyingServer(PostgresServer &server, qint64 bytes)
    : m_relay(new Relay{server, bytes}) {
    const sockaddr_un address = addressOf(m_relay->folder.filePath(u".s.PGSQL.5432"_s));
    m_relay->listening = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(::bind(m_relay->listening, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(m_relay->listening, 1), 0);
    m_relay->thread = std::thread([this] { m_relay->work(); });
}

DyingServer::~DyingServer() {
    m_relay->thread.join();
    ::close(m_relay->listening);
}

QString DyingServer::connection() const {
    return u"host=%1 dbname=postgres user=qir sslmode=disable gssencmode=disable"_s.arg(m_relay->folder.path());
}

} // namespace qir
