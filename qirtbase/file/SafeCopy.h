#pragma once

#include "qirtbase/container/FileHeader.h"

#include <QByteArray>
#include <QByteArrayView>

#include <sodium.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace qir {

/// What stands for a name or a path where it should not be read.
using PlaceHash = std::array<unsigned char, 16>;
PlaceHash placeHash(const std::string &text);

/// Over the bytes of both versions, in their order.
class VersionsDigest {
public:
    using Value = std::array<unsigned char, 32>;

    VersionsDigest();
    void add(QByteArrayView bytes);
    Value value();

private:
    crypto_generichash_state m_state;
};

/// The head of a safe copy. Behind it stand the file as it was, byte for byte, and as it is to be.
///
/// The device is not part of it: its number is another one after a restart or on another machine, and what the file
/// holds tells more.
struct SafeCopyHead {
    std::uint64_t inode = 0;
    PlaceHash name{};      ///< Of the file's name in its folder.
    PlaceHash path{};      ///< Of its canonicalPath().
    FileIdentifier base{}; ///< Save ids of the two versions.
    FileIdentifier next{};
    std::uint64_t baseSize = 0;
    std::uint64_t nextSize = 0;
    VersionsDigest::Value digest{};

    static constexpr std::size_t size = 160;
    QByteArray encode() const;
    /// Nothing where the bytes are no head, or one that was made void.
    static std::optional<SafeCopyHead> decode(QByteArrayView bytes);
    /// What a copy starts with whose save is settled; everything behind counts no more.
    static QByteArrayView voidMark();
};

/// A small file that tells where the safe copy of a file with several names lies, for those who come by another name.
struct SafeCopyPointer {
    std::uint64_t inode = 0;
    std::string path;

    static constexpr std::size_t sizeMax = 8192;
    QByteArray encode() const;
    static std::optional<SafeCopyPointer> decode(QByteArrayView bytes);
};

/// The names of both: ".qir-RANDOM.safe".
std::string newSafeCopyName();
bool isSafeCopyName(const std::string &name);

} // namespace qir
