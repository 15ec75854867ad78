#pragma once

#include <cstddef>
#include <cstdint>

/// Where everything stands in a database file. On disk for ever: add, never change. docs/file-format.md tells the rest.
namespace qir::layout {

inline constexpr std::size_t lengthDigits = 10;  // the header's length in decimal, before everything else
inline constexpr std::size_t headerLength = 192; // what this version writes without extensions
inline constexpr std::size_t headerLengthMax = 4096;

// Offsets within the header. Numbers are little-endian.
inline constexpr std::size_t magic = 0;          // "QIR"
inline constexpr std::size_t protection = 3;     // '1' protected, all else open
inline constexpr std::size_t majorVersion = 4;   // u16
inline constexpr std::size_t minorVersion = 6;   // u16
inline constexpr std::size_t requiredBits = 8;   // u32: a reader that does not know one refuses
inline constexpr std::size_t optionalBits = 12;  // u32: a reader may ignore them
inline constexpr std::size_t reserved1 = 16;     // 4 zeros
inline constexpr std::size_t chunkSizeLog2 = 20; // u8
inline constexpr std::size_t kdfMethod = 21;     // u8
inline constexpr std::size_t cipherMethod = 22;  // u8
inline constexpr std::size_t digestMethod = 23;  // u8
inline constexpr std::size_t bodyLength = 24;    // u64
inline constexpr std::size_t fileId = 32;
inline constexpr std::size_t saveId = 48;
inline constexpr std::size_t generation = 64;   // u64
inline constexpr std::size_t reserved2 = 72;    // 8 zeros
inline constexpr std::size_t kdfPasses = 80;    // u32
inline constexpr std::size_t kdfMemoryKiB = 84; // u32
inline constexpr std::size_t kdfLanes = 88;     // u32
inline constexpr std::size_t reserved3 = 92;    // 4 zeros
inline constexpr std::size_t salt = 96;
inline constexpr std::size_t reserved4 = 112;  // 16 zeros
inline constexpr std::size_t extensions = 128; // to the header MAC

inline constexpr std::size_t idSize = 16;
inline constexpr std::size_t saltSize = 16;
inline constexpr std::size_t digestSize = 32; // of the header MAC and of the header digest
inline constexpr std::size_t macFromEnd = 64; // the header MAC starts this far before the header's end
inline constexpr std::size_t digestFromEnd = 32;

inline constexpr std::uint16_t extensionRequired = 0x8000;

inline constexpr std::uint16_t currentMajor = 1;
inline constexpr std::uint16_t currentMinor = 0;
inline constexpr std::uint8_t writtenChunkLog2 = 16;
inline constexpr std::uint8_t chunkLog2Min = 12;
inline constexpr std::uint8_t chunkLog2Max = 20;

enum class Kdf : std::uint8_t { None = 0, Argon2id13 = 1 };
enum class Cipher : std::uint8_t { None = 0, XChaCha20Poly1305Stream = 1 };
enum class Digest : std::uint8_t { Blake2bXxh3 = 1 };

inline constexpr std::size_t streamHeaderSize = 24; // protected files, right after the header
inline constexpr std::size_t protectedTagSize = 17; // added to each chunk
inline constexpr std::size_t openTagSize = 16;

static_assert(extensions + macFromEnd == headerLength);
static_assert(salt + saltSize == reserved4);
static_assert(saveId + idSize == generation);

} // namespace qir::layout
