#pragma once

#include "tests/tools/fake/FakeControl.h"

#include <algorithm>
#include <string>
#include <vector>

namespace qir::test {

/// The calls that the fake component got, each "left NAME" or "right NAME", the instance made first being the left one.
inline std::vector<std::string> loggedCalls(const FakeControl &fake) {
    int first = fake.log().isEmpty() ? 0 : fake.log().first().instance;
    for (const FakeCall &call : fake.log())
        first = std::min(first, call.instance);
    std::vector<std::string> calls;
    for (const FakeCall &call : fake.log())
        calls.push_back((call.instance == first ? "left " : "right ") + call.member.toStdString());
    return calls;
}

/// The same with the arguments in parentheses.
inline std::vector<std::string> loggedCallsWithArguments(const FakeControl &fake) {
    std::vector<std::string> calls = loggedCalls(fake);
    for (std::size_t i = 0; i < calls.size(); ++i) {
        QStringList arguments;
        for (const QVariant &argument : fake.log()[static_cast<qsizetype>(i)].arguments)
            arguments.append(argument.toString());
        calls[i] += '(' + arguments.join(u',').toStdString() + ')';
    }
    return calls;
}

} // namespace qir::test
