#pragma once

#include "qirtbase/model/Database.h"
#include "tests/model/PlainDatabase.h"
#include "tests/model/RandomValues.h"

#include <QString>

#include <rapidcheck.h>

#include <cstdint>

/// What component tests share: plain copies of databases to compare, and random ones.
namespace qir::test {

/// Everything in a database, one value after another.
PlainDatabase plain(const Database &database);

/// Decisions of the property that runs.
class PropertyChoices : public Choices {
public:
    int inRange(int from, int to) override;
    std::uint64_t bits() override;
};

/// randomText(Choices &) and so on, by the property that runs.
QString randomText();
double randomNumber();
QString randomName();

/// Makes one random change; one that the rules refuse changes nothing.
void changeAtRandom(Database &database);

/// A database made by random commands.
Database randomDatabase();

} // namespace qir::test
