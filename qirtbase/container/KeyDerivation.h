#pragma once

#include "base/LoadError.h"
#include "qirtbase/container/FileHeader.h"
#include "qirtbase/container/SecretKey.h"

#include <functional>

namespace qir {

/// The master key of a password. A replaceable function, so that tests and fuzzers need not pay for it every time.
using KeyDeriver = std::function<LoadResult<SecretBytes>(const SecretBytes &password, const KdfParameters &parameters)>;

/// Argon2id 1.3 with the costs given; fails only where the memory is not to be had. Takes 0.3 to 0.8 s with the costs
/// that we write.
LoadResult<SecretBytes> deriveMasterKey(const SecretBytes &password, const KdfParameters &parameters);

/// The key that seals the header of files under this master key.
SecretBytes deriveHeadKey(const SecretBytes &master);
/// The key of the chunks of one version of a file: bound to all of its header.
SecretBytes deriveBodyKey(const SecretBytes &master, const HeaderDigest &digest);

} // namespace qir
