#include "cli/FileError.h"
#include "cli/exchange/ExchangeTarget.h"

#include <QDir>
#include <QFileInfo>

#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// The files take their places one after the other once all of them are written.
class CsvFolder : public ExchangeTarget {
public:
    CsvFolder(QString folder, ExportRules rules, Formulas formulas)
        : m_folder(std::move(folder))
        , m_rules(std::move(rules))
        , m_formulas(formulas) {
        if (QFileInfo::exists(m_folder))
            return;
        if (!QDir().mkdir(m_folder))
            throw FileError(m_folder, u"the folder cannot be made"_s);
        m_isMade = true;
    }
    ~CsvFolder() override {
        m_files.clear();
        if (m_isMade && !m_isDone)
            (void)QDir().rmdir(m_folder);
    }

    void check(const TableInfo &table) const override {
        if (table.name.contains(u'/') || table.name.contains(QChar::Null))
            throw FileError(m_folder, u"no file can have the name of the table \"%1\""_s.arg(table.name));
        if (table.fields.empty())
            throw FileError(m_folder, u"the table \"%1\" has no field, and no CSV file says so; choose others by "
                                      "--table"_s.arg(table.name));
    }
    void begin(const TableInfo &table) override {
        const QString name = table.name + u".csv"_s;
        m_files.push_back(std::make_unique<NewContent>(m_folder + u'/' + name, m_rules));
        QByteArray header;
        appendCsvHeader(header, table, m_formulas);
        m_files.back()->write(header);
    }
    void append(const Portion &portion) override {
        const auto append = [this](QByteArray &out, const Portion &records, int from, int to) {
            appendCsvRecords(out, records, from, to, m_formulas);
        };
        m_texts.make(portion, append, [this](QByteArrayView text) { m_files.back()->write(text); });
    }
    void finish() override {
        for (const std::unique_ptr<NewContent> &file : m_files)
            file->finish();
        m_isDone = true;
    }

private:
    QString m_folder;
    ExportRules m_rules;
    Formulas m_formulas;
    std::vector<std::unique_ptr<NewContent>> m_files;
    PortionTexts m_texts;
    bool m_isMade = false;
    bool m_isDone = false;
};

} // namespace

std::unique_ptr<ExchangeTarget> csvFolder(const QString &folder, const ExportRules &rules, Formulas formulas) {
    return std::make_unique<CsvFolder>(folder, rules, formulas);
}

} // namespace qir
