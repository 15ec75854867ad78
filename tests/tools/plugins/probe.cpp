// Prints the class of what serves an identifier, or the error: run where a test has put it, among folders of its own.

#include "platform/automation/ComponentLoader.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    try {
        const qir::AutomationObject object = qir::createObject(application.arguments().value(1));
        std::puts(object.object()->metaObject()->className());
        return 0;
    } catch (const std::exception &error) {
        std::puts(error.what());
        return 1;
    }
}
