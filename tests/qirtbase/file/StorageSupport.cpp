#include "tests/qirtbase/file/StorageSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/mman.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

QString quickTemplate() {
    const QString memory = u"/dev/shm"_s;
    const QString place = QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
    return place + u"/qir-test-XXXXXX"_s;
}

} // namespace

QuickFolder::QuickFolder()
    : m_folder(quickTemplate()) {
    if (!m_folder.isValid())
        throw std::runtime_error("cannot make a temporary folder");
}

void PrintTo(LoadErrorKind kind, std::ostream *out) {
    static constexpr const char *names[] = {"Missing",      "AmbiguousName", "NotAFile",  "Unreadable",
                                            "Empty",        "NotADatabase",  "Truncated", "Damaged",
                                            "NewerVersion", "WrongPassword", "Limits"};
    *out << names[static_cast<int>(kind)];
}

void CountingRandom::fill(std::span<unsigned char> bytes) {
    for (unsigned char &byte : bytes)
        byte = m_next++;
}

KeyDeriver rememberingDeriver() {
    struct Keys {
        std::mutex mutex; // keys are derived in threads too
        std::map<std::pair<std::string, std::string>, SecretBytes> of;
    };
    const auto known = std::make_shared<Keys>();
    return [known](const SecretBytes &password, const KdfParameters &parameters) -> LoadResult<SecretBytes> {
        const auto &[costs, salt] = parameters;
        const std::pair<std::string, std::string> name(
            std::string(reinterpret_cast<const char *>(password.data()), password.size()),
            std::string(salt.begin(), salt.end()) + std::to_string(costs.passes) + ' ' +
                std::to_string(costs.memoryKiB));
        const std::lock_guard lock(known->mutex);
        if (const auto found = known->of.find(name); found != known->of.end())
            return found->second.clone();
        return deriveMasterKey(password, parameters).map([&](SecretBytes key) {
            known->of.emplace(name, key.clone());
            return key;
        });
    };
}

QByteArray contentOf(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.readAll();
    return content.isNull() ? QByteArray("") : content;
}

void writeContent(const QString &path, const QByteArray &content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

QStringList namesIn(const QString &folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

QByteArray containerBytes(const QByteArray &body, const QString &password, FileHeader header) {
    CountingRandom random;
    if (header.fileId == FileIdentifier{})
        random.fill(header.fileId);
    if (header.saveId == FileIdentifier{})
        random.fill(header.saveId);
    ContainerKeys keys;
    if (!password.isEmpty()) {
        static const KeyDeriver derive = rememberingDeriver();
        keys.kdf.costs = cheapCosts;
        random.fill(keys.kdf.salt);
        keys.master = derive(passwordBytes(password), keys.kdf).value();
    }
    ContainerWriter writer(header, keys, body, random);
    QByteArray bytes;
    for (QByteArrayView piece = writer.next(); !piece.isEmpty(); piece = writer.next())
        bytes.append(piece);
    return bytes;
}

LoadResult<LoadedContainer> readBytes(const QByteArray &bytes, const QString &password, const ContainerLimits &limits,
                                      FileOps &ops) {
    static const KeyDeriver derive = rememberingDeriver();
    const OpenFile file(FileOps::system(), ::memfd_create("container", MFD_CLOEXEC));
    if (!writeFully(FileOps::system(), file.descriptor(), bytes))
        throw std::runtime_error("cannot write the container");
    return readContainer(ops, file.descriptor(), password, limits, derive);
}

QString testStateFolder() {
    static const QuickFolder folder;
    return folder.filePath(u"state"_s);
}

DatabaseFileOptions testOptions(RandomSource *random) {
    static const KeyDeriver derive = rememberingDeriver();
    DatabaseFileOptions options;
    options.costs = cheapCosts;
    options.random = random;
    options.deriveKey = derive;
    options.stateFolder = testStateFolder();
    return options;
}

QByteArray loadedBody(const QString &file, DatabaseFileOptions options, const QString &password) {
    DatabaseFile reader(FileOps::system(), std::move(options));
    const auto body = reader.load(file, password);
    return body ? *body : QByteArray("ERROR: ") + body.error().text.toUtf8();
}

} // namespace qir
