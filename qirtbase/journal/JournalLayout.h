#pragma once

#include "qirtbase/container/FileLayout.h"

#include <cstddef>
#include <cstdint>

/// Where everything stands in a journal's file. On disk for ever: add, never change. JournalHead.h, JournalFile.h and
/// JournalCodec.h tell the rest.
namespace qir::journal {

inline constexpr char magic[] = {'Q', 'I', 'R', 'J', 'R', 'N', 'L'};
inline constexpr int newestVersion = 4;
inline constexpr std::size_t step = 512; ///< What is sealed has a multiple of this many bytes.
inline constexpr std::size_t headSizeMax = 17408;
inline constexpr std::size_t pathMax = 16384;
inline constexpr std::size_t payloadMax = std::size_t{2} << 20;

/// Offsets within the head. Numbers are little-endian.
namespace head {
inline constexpr std::size_t version = 7; // a digit
inline constexpr std::size_t length = 8;  // u32: of the whole head
inline constexpr std::size_t sealed = 12; // u32: 0 or 1
inline constexpr std::size_t nonce = 16;
inline constexpr std::size_t kdfPasses = 32;    // u32
inline constexpr std::size_t kdfMemoryKiB = 36; // u32
inline constexpr std::size_t kdfLanes = 40;     // u32
inline constexpr std::size_t reserved = 44;     // 4 zeros
inline constexpr std::size_t salt = 48;
inline constexpr std::size_t identity = 64; // to the digest
inline constexpr std::size_t digestFromEnd = layout::digestSize;
} // namespace head

/// Offsets within the identity, as it is before it is sealed.
namespace identity {
inline constexpr std::size_t fileId = 0;
inline constexpr std::size_t saveId = 16;
inline constexpr std::size_t device = 32;     // u64
inline constexpr std::size_t inode = 40;      // u64
inline constexpr std::size_t pathLength = 48; // u16
inline constexpr std::size_t path = 50;
} // namespace identity

/// Offsets within a head of version 1 where they are others. It has no identity: that stands in it openly.
namespace head1 {
inline constexpr std::size_t fileId = 16;
inline constexpr std::size_t saveId = 32;
inline constexpr std::size_t nonce = 48;
inline constexpr std::size_t kdfPasses = 64;
inline constexpr std::size_t kdfMemoryKiB = 68;
inline constexpr std::size_t salt = 80;
inline constexpr std::size_t pathLength = 96; // u16
} // namespace head1

namespace segment {
inline constexpr std::uint32_t mark = 0xffffffff; // where a record has its length
inline constexpr std::size_t streamHeader = sizeof mark;
inline constexpr std::size_t headSize = streamHeader + layout::streamHeaderSize;
} // namespace segment

namespace record {
inline constexpr std::size_t lengthSize = sizeof(std::uint32_t);
inline constexpr std::size_t openTagSize = 16;
inline constexpr std::size_t sealedTagSize = layout::protectedTagSize;
} // namespace record

static_assert(head::version == sizeof magic);
static_assert(head::nonce + layout::idSize == head::kdfPasses);
static_assert(head::salt + layout::saltSize == head::identity);
static_assert(identity::saveId + layout::idSize == identity::device);
static_assert(head1::salt + layout::saltSize == head1::pathLength);

} // namespace qir::journal
