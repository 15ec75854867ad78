#pragma once

#include "tests/tools/fake/FakeControl.h"

#include <QStringList>

#include <algorithm>

namespace qir::test {

/// The calls that the fake component got, each "left NAME" or "right NAME", the instance made first being the left one.
inline QStringList loggedCalls(const FakeControl &fake) {
    int first = fake.log().isEmpty() ? 0 : fake.log().first().instance;
    for (const FakeCall &call : fake.log())
        first = std::min(first, call.instance);
    QStringList calls;
    for (const FakeCall &call : fake.log())
        calls.append((call.instance == first ? QStringLiteral("left ") : QStringLiteral("right ")) + call.member);
    return calls;
}

/// The same with the arguments in parentheses.
inline QStringList loggedCallsWithArguments(const FakeControl &fake) {
    QStringList calls = loggedCalls(fake);
    for (qsizetype i = 0; i < calls.size(); ++i) {
        QStringList arguments;
        for (const QVariant &argument : fake.log()[i].arguments)
            arguments.append(argument.toString());
        calls[i] += u'(' + arguments.join(u',') + u')';
    }
    return calls;
}

} // namespace qir::test
