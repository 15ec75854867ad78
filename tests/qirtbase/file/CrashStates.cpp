#include "tests/qirtbase/file/CrashStates.h"

#include <QCryptographicHash>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <stdexcept>

namespace qir {

namespace {

using Kind = FileEvent::Kind;

constexpr std::uint64_t pageSize = 4096;
constexpr std::size_t exhaustiveMax = 16; // changes; beyond it their combinations are too many in any case

bool isOfFile(const FileEvent &event) {
    return event.kind == Kind::Write || event.kind == Kind::Truncate;
}

bool isOfFolder(const FileEvent &event) {
    return event.kind == Kind::Make || event.kind == Kind::Rename || event.kind == Kind::Exchange ||
           event.kind == Kind::Unlink || event.kind == Kind::MakeFolder;
}

std::string parentOf(const std::string &path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

/// True where all folders on the way are there.
bool isReached(const DiskState &state, const std::string &path) {
    for (std::string folder = parentOf(path); !folder.empty(); folder = parentOf(folder))
        if (!state.folders.contains(folder))
            return false;
    return true;
}

QByteArray digestOf(const DiskState &state) {
    QCryptographicHash hash(QCryptographicHash::Md5);
    const auto add = [&](const std::string &text) {
        hash.addData(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
        hash.addData(QByteArrayView("\0", 1));
    };
    for (const std::string &folder : state.folders)
        if (isReached(state, folder))
            add(folder);
    for (const auto &[path, file] : state.names)
        if (isReached(state, path)) {
            const QByteArray &content = state.contents.at(file);
            add(path + ':' + std::to_string(content.size()));
            hash.addData(content);
        }
    return hash.result();
}

/// Which of `count` changes are kept: every combination where they are few, else a choice of them.
class Choices {
public:
    Choices(std::size_t count, std::size_t most, std::size_t seed)
        : m_count(count)
        , m_isExhaustive(count <= exhaustiveMax && (std::size_t{1} << count) <= most)
        , m_most(m_isExhaustive ? std::size_t{1} << count : most)
        , m_random(static_cast<std::mt19937::result_type>(seed)) {}

    std::size_t size() const { return m_most; }
    std::vector<bool> at(std::size_t choice) {
        std::vector<bool> kept(m_count);
        if (m_isExhaustive) {
            for (std::size_t i = 0; i < m_count; ++i)
                kept[i] = (choice >> i & 1) != 0;
        } else if (choice < 4 * m_count) {
            const std::size_t at = choice / 4;
            for (std::size_t i = 0; i < m_count; ++i)
                kept[i] = choice % 4 == 0   ? i != at // one is missing
                          : choice % 4 == 1 ? i == at // only one is there
                          : choice % 4 == 2 ? i <= at // the first ones are
                                            : i >= at;
        } else {
            static constexpr double odds[] = {0.5, 0.1, 0.9};
            std::bernoulli_distribution keep(odds[choice % 3]);
            for (std::size_t i = 0; i < m_count; ++i)
                kept[i] = keep(m_random);
        }
        return kept;
    }

private:
    std::size_t m_count;
    bool m_isExhaustive;
    std::size_t m_most;
    std::mt19937 m_random;
};

} // namespace

void CrashStates::apply(const Pending &pending, DiskState &state) {
    const FileEvent &event = *pending.event;
    switch (event.kind) {
    case Kind::Write: {
        QByteArray &content = state.contents[event.file];
        if (content.size() < static_cast<qsizetype>(pending.end))
            content.append(QByteArray(static_cast<qsizetype>(pending.end) - content.size(), '\0'));
        content.replace(static_cast<qsizetype>(pending.begin), static_cast<qsizetype>(pending.end - pending.begin),
                        event.bytes.mid(static_cast<qsizetype>(pending.begin - event.offset),
                                        static_cast<qsizetype>(pending.end - pending.begin)));
        break;
    }
    case Kind::Truncate: {
        QByteArray &content = state.contents[event.file];
        if (content.size() < static_cast<qsizetype>(event.offset))
            content.append(QByteArray(static_cast<qsizetype>(event.offset) - content.size(), '\0'));
        content.truncate(static_cast<qsizetype>(event.offset));
        break;
    }
    case Kind::Make:
        state.names.emplace(event.name, event.file);
        state.contents.try_emplace(event.file, QByteArray());
        break;
    case Kind::Rename: // one whose source is missing cannot have happened
        if (const auto from = state.names.find(event.name); from != state.names.end()) {
            state.names[event.other] = from->second;
            state.names.erase(event.name);
        }
        break;
    case Kind::Exchange: {
        const auto from = state.names.find(event.name);
        const auto to = state.names.find(event.other);
        if (from != state.names.end() && to != state.names.end())
            std::swap(from->second, to->second);
        break;
    }
    case Kind::Unlink:
        state.names.erase(event.name);
        break;
    case Kind::MakeFolder:
        state.folders.insert(event.name);
        break;
    case Kind::SyncFile:
    case Kind::SyncFolder:
    case Kind::Mark:
        break;
    }
}

void CrashStates::settle(DiskState &durable, const std::function<bool(const FileEvent &)> &isSynced) {
    std::vector<Pending> left;
    for (const Pending &pending : m_pending) {
        if (isSynced(*pending.event))
            apply(pending, durable);
        else
            left.push_back(pending);
    }
    m_pending = std::move(left);
}

void CrashStates::take(const FileEvent &event, DiskState &durable) {
    switch (event.kind) {
    case Kind::Write: {
        const std::uint64_t end = event.offset + static_cast<std::uint64_t>(event.bytes.size());
        for (std::uint64_t at = event.offset; at < end;) {
            const std::uint64_t pageEnd = std::min(end, (at / pageSize + 1) * pageSize);
            m_pending.push_back({&event, at, pageEnd});
            at = pageEnd;
        }
        break;
    }
    case Kind::SyncFile:
        settle(durable, [&](const FileEvent &change) { return isOfFile(change) && change.file == event.file; });
        break;
    case Kind::SyncFolder:
        settle(durable, [&](const FileEvent &change) { return isOfFolder(change) && change.folder == event.folder; });
        break;
    case Kind::Mark:
        break;
    default:
        m_pending.push_back({&event});
    }
}

DiskState CrashStates::stateOf(const DiskState &durable, const std::vector<bool> &kept, bool fullLength) const {
    DiskState state = durable;
    std::map<int, qsizetype> lengths;
    for (std::size_t i = 0; i < m_pending.size(); ++i) {
        if (kept[i])
            apply(m_pending[i], state);
        if (m_pending[i].event->kind == Kind::Write)
            lengths[m_pending[i].event->file] = static_cast<qsizetype>(m_pending[i].end);
        else if (m_pending[i].event->kind == Kind::Truncate)
            lengths.erase(m_pending[i].event->file);
    }
    if (fullLength)
        for (const auto &[file, length] : lengths)
            if (QByteArray &content = state.contents[file]; content.size() < length)
                content.append(QByteArray(length - content.size(), '\0'));
    return state;
}

std::size_t CrashStates::visit(std::size_t perMoment,
                               const std::function<void(const DiskState &, const Moment &)> &show) {
    DiskState durable = m_recorded.initial();
    std::set<QByteArray> different;
    std::set<std::pair<QByteArray, int>> shown; // with the mark that it came after
    Moment moment;
    int marks = 0;
    m_pending.clear();
    const std::vector<FileEvent> &events = m_recorded.events();
    for (moment.event = 0; moment.event <= events.size(); ++moment.event) {
        Choices choices(m_pending.size(), perMoment / 2, moment.event);
        for (std::size_t choice = 0; choice < choices.size(); ++choice) {
            const std::vector<bool> kept = choices.at(choice);
            for (const bool fullLength : {false, true}) {
                const DiskState state = stateOf(durable, kept, fullLength);
                const QByteArray digest = digestOf(state);
                different.insert(digest);
                if (shown.emplace(digest, marks).second)
                    show(state, moment);
            }
        }
        if (moment.event == events.size())
            break;
        const FileEvent &event = events[moment.event];
        take(event, durable);
        if (event.kind == Kind::Mark) {
            moment.low = event.low;
            moment.high = event.high;
            ++marks;
        }
    }
    return different.size();
}

FormerInodes putOnDisk(const DiskState &state, const std::string &root) {
    namespace fs = std::filesystem;
    for (const fs::directory_entry &entry : fs::directory_iterator(root))
        fs::remove_all(entry.path());
    const auto at = [&](const std::string &path) { return root + '/' + path; };
    for (const std::string &folder : state.folders) // a folder comes before what is in it
        if (isReached(state, folder) && ::mkdir(at(folder).c_str(), 0700) != 0)
            throw std::runtime_error("cannot make a folder");
    for (const auto &[path, target] : state.links)
        fs::create_symlink(target, at(path));
    std::map<int, std::string> made;
    for (const auto &[path, file] : state.names) {
        if (!isReached(state, path))
            continue;
        const auto [first, isFirst] = made.emplace(file, path);
        if (!isFirst) {
            fs::create_hard_link(at(first->second), at(path));
            continue;
        }
        const auto out = OpenFile::openAt(FileOps::system(), AT_FDCWD, at(path), O_CREAT | O_EXCL | O_WRONLY, 0600);
        if (!out || !writeFully(FileOps::system(), out->descriptor(), state.contents.at(file)))
            throw std::runtime_error("cannot write a file");
    }
    FormerInodes inodes;
    for (const auto &[file, path] : made)
        if (const auto former = state.inodes.find(file); former != state.inodes.end()) {
            struct stat status {};
            if (::lstat(at(path).c_str(), &status) != 0)
                throw std::runtime_error("cannot look at a file");
            inodes[status.st_ino] = former->second;
        }
    return inodes;
}

SystemResult<struct stat> SameInodes::asBefore(SystemResult<struct stat> status) const {
    // A number that a file had belongs to nobody else.
    if (!status)
        return status;
    const auto former = m_inodes.find(status->st_ino);
    status->st_ino = former == m_inodes.end() ? ~status->st_ino : former->second;
    return status;
}

SystemResult<struct stat> SameInodes::doStatus(int file) {
    return asBefore(ForwardingFileOps::doStatus(file));
}

SystemResult<struct stat> SameInodes::doStatusAt(int folder, const std::string &name, FollowLinks follow) {
    return asBefore(ForwardingFileOps::doStatusAt(folder, name, follow));
}

} // namespace qir
