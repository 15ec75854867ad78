#include "fuzz/InputBytes.h"
#include "tests/model/ComponentPair.h"

using namespace qir;

/// The component's members, called in the order and with the arguments that the bytes say, against the model of their
/// rules. A difference is an exception that nobody catches.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::InputBytes choices(data, size);
    test::ComponentPair pair(choices);
    while (!choices.atEnd()) {
        pair.callAtRandom();
        pair.compare();
    }
    pair.compareAll();
    return 0;
}
