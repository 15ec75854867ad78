#include "fuzz/Require.h"
#include "qirtbase/model/BodyCodec.h"

using namespace qir;

/// Bodies: what is accepted is the one way to write down what it says.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArrayView body(data, static_cast<qsizetype>(size));
    const auto database = decodeBody(body);
    if (database)
        fuzz::require(encodeBody(*database) == body, "encode(decode(x)) == x");
    else
        fuzz::require(!database.error().text.isEmpty(), "a refusal has a reason");
    return 0;
}
