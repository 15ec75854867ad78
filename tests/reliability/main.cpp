#include "tests/reliability/Process.h"

#include <gtest/gtest.h>

#include <cstdio>

int main(int argc, char **argv) {
    std::printf("as user %u\n", qir::runAsOrdinaryUser());
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
