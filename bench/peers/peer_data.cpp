// Makes the databases that bench/compare-with-peers works on.
//
//   peer_data RECORDS LEFT RIGHT    RIGHT is LEFT with one cell in a thousand changed

#include "bench/MixedTable.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>

int main(int argc, char *argv[]) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    try {
        qir::bench::makeMixedFile(arguments.value(2), arguments.value(1).toInt());
        qir::bench::makeMixedFile(arguments.value(3), arguments.value(1).toInt(), true);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "peer_data: %s\n", error.what());
        return 2;
    }
    return 0;
}
