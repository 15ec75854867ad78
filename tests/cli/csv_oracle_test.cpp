#include "cli/tables/CsvTable.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <csv.h>

#include <string>
#include <vector>

namespace qir {

namespace {

/// What libcsv, which others read CSV files with, makes of the same bytes.
class OtherReader {
public:
    explicit OtherReader(const std::string &bytes) {
        csv_parser parser{};
        csv_init(&parser, CSV_REPALL_NL);
        csv_set_space_func(&parser, [](unsigned char) { return 0; });
        csv_parse(&parser, bytes.data(), bytes.size(), takeValue, takeLine, this);
        csv_fini(&parser, takeValue, takeLine, this);
        csv_free(&parser);
    }

    const std::vector<std::vector<std::string>> &lines() const { return m_lines; }

private:
    static void takeValue(void *value, std::size_t size, void *self) {
        static_cast<OtherReader *>(self)->m_line.emplace_back(static_cast<const char *>(value), size);
    }
    static void takeLine(int end, void *self) { static_cast<OtherReader *>(self)->endLine(end); }

    /// It tells each character that ends a line.
    void endLine(int end) {
        const bool isRest = m_line.empty() && m_lineEnd == '\r' && end == '\n';
        m_lineEnd = isRest ? '\n' : end;
        if (isRest)
            return;
        if (!m_line.empty())
            m_lines.push_back(m_line);
        else if (m_lines.size() > 0 && m_lines.front().size() == 1)
            m_lines.push_back({""}); // a line of nothing, where there is one column
        m_line.clear();
    }

    std::vector<std::vector<std::string>> m_lines;
    std::vector<std::string> m_line;
    int m_lineEnd = 0;
};

RC_GTEST_PROP(CsvOracleTest, EveryFileThatIsTakenReadsAsAnotherReaderReadsIt, ()) {
    const auto drawn = *rc::gen::container<std::string>(rc::gen::elementOf(std::string("aab,,,\"\"\n\n\r ;")));
    const std::string bytes = "x,y\n" + drawn;
    for (const std::string &file : {drawn, bytes}) {
        const Result<CsvTable> table = CsvTable::read(QByteArray::fromStdString(file), ',');
        RC_CLASSIFY(table.has_value(), "taken");
        if (!table)
            continue;
        const OtherReader other(file);
        RC_ASSERT(other.lines().size() == table->records() + 1);
        for (std::size_t column = 0; column < other.lines().front().size(); ++column) {
            RC_ASSERT(other.lines().front()[column] ==
                      table->header().at(static_cast<qsizetype>(column)).toStdString());
            for (std::size_t record = 0; record < table->records(); ++record)
                RC_ASSERT(other.lines()[record + 1].at(column) == table->value(record, column).toStdString());
        }
    }
}

} // namespace

} // namespace qir
