#include "qirtbase/model/Column.h"

#include "base/NumberText.h"
#include "base/columns/ColumnBuilder.h"
#include "base/columns/UnicodeText.h"

#include <algorithm>
#include <bit>

namespace qir {

namespace {

void assignAscii(QString &text, const char *first, const char *last) {
    text.resize(last - first);
    std::copy(first, last, reinterpret_cast<char16_t *>(text.data()));
}

template<class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template<class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

} // namespace

const PackedTexts &Column::Texts::values() const {
    static const PackedTexts none;
    return m_texts ? *m_texts : none;
}

PackedTexts &Column::Texts::values() {
    if (!m_texts)
        m_texts = std::make_unique<PackedTexts>();
    return *m_texts;
}

Column::Column(ColumnType type, std::size_t records)
    : m_type(type) {
    switch (type) {
    case ColumnType::Bool:
    case ColumnType::Byte:
        m_held.emplace<std::vector<std::uint8_t>>(records);
        break;
    case ColumnType::Int:
        m_held.emplace<std::vector<std::int16_t>>(records);
        break;
    case ColumnType::Long:
        m_held.emplace<std::vector<std::int32_t>>(records);
        break;
    case ColumnType::Double:
    case ColumnType::Date:
        m_held.emplace<std::vector<double>>(records);
        break;
    case ColumnType::Text:
        m_held.emplace<Texts>();
        if (records != 0)
            texts().resize(records);
        break;
    }
}

Column::Column(ColumnType type, Storage storage, std::size_t textBytes)
    : m_type(type)
    , m_textBytes(textBytes) {
    std::visit(Overloaded{[this](PackedTexts &&given) {
                              m_held.emplace<Texts>();
                              if (!given.isEmpty())
                                  texts() = std::move(given);
                          },
                          [this]<class Numbers>(Numbers &&given) {
                              m_held.emplace<std::remove_cvref_t<Numbers>>(std::forward<Numbers>(given));
                          }},
               std::move(storage));
}

std::size_t Column::size() const {
    return visit([](const auto &values) { return values.size(); });
}

std::size_t Column::memory() const {
    return visit(Overloaded{[](const PackedTexts &texts) { return texts.memory(); },
                            [](const auto &numbers) { return numbers.capacity() * sizeof(numbers[0]); }});
}

CellValue Column::value(std::size_t record) const {
    return visit(
        Overloaded{[record](const PackedTexts &texts) -> CellValue { return texts.at(record); },
                   [record](const auto &numbers) -> CellValue { return static_cast<double>(numbers[record]); }});
}

QVariant Column::variant(std::size_t record) const {
    return visit(Overloaded{[record](const PackedTexts &texts) { return QVariant(texts.at(record)); },
                            [record](const std::vector<double> &numbers) { return QVariant(numbers[record]); },
                            [record](const auto &integers) { return QVariant(int{integers[record]}); }});
}

void Column::readText(std::size_t record, QString &text) const {
    visit(Overloaded{[&](const PackedTexts &texts) { texts.read(record, text); },
                     [&](const auto &numbers) {
                         char digits[numberTextCapacity];
                         assignAscii(text, digits, formatNumber(digits, numbers[record]));
                     }});
}

ColumnBlock Column::block(std::size_t first, std::size_t count) const {
    ColumnBuilder builder(m_type, static_cast<qsizetype>(count));
    QString text;
    for (std::size_t record = first; record < first + count; ++record) {
        if (isText()) {
            readText(record, text);
            builder.add(QStringView(text));
        } else {
            builder.add(std::get<double>(value(record)));
        }
    }
    return builder.take();
}

bool Column::holds(std::size_t record, double number) const {
    const double stored = std::get<double>(value(record));
    return std::bit_cast<std::uint64_t>(stored) == std::bit_cast<std::uint64_t>(number);
}

bool Column::holds(std::size_t record, const QString &text) const {
    return std::get<Texts>(m_held).values().holds(record, text);
}

void Column::set(std::size_t record, double number) {
    change(Overloaded{[](PackedTexts &) { Q_UNREACHABLE(); },
                      [&]<class Value>(std::vector<Value> &numbers) { numbers[record] = static_cast<Value>(number); }});
}

void Column::set(std::size_t record, const QString &text) {
    PackedTexts &packed = texts();
    const std::size_t replaced = utf8Size(packed.view(record));
    packed.set(record, text);
    m_textBytes = m_textBytes - replaced + utf8Size(QStringView(text));
}

void Column::set(std::size_t record, const CellValue &value) {
    std::visit([&](const auto &content) { set(record, content); }, value);
}

void Column::makeRoom() {
    change(Overloaded{[](PackedTexts &texts) { texts.makeRoom(); },
                      [](auto &numbers) {
                          constexpr std::size_t fewest = 8;
                          if (numbers.size() == numbers.capacity())
                              numbers.reserve(std::max(fewest, numbers.size() + numbers.size() / 2));
                      }});
}

void Column::append() {
    change([](auto &values) { values.resize(values.size() + 1); });
}

void Column::insert(std::size_t record, const CellValue &value) {
    change(Overloaded{[&](PackedTexts &texts) {
                          const auto &text = std::get<QString>(value);
                          texts.insertAt(record, text);
                          m_textBytes += utf8Size(QStringView(text));
                      },
                      [&]<class Value>(std::vector<Value> &numbers) {
                          numbers.insert(numbers.begin() + static_cast<std::ptrdiff_t>(record),
                                         static_cast<Value>(std::get<double>(value)));
                      }});
}

void Column::remove(std::size_t record) {
    change(Overloaded{[&](PackedTexts &texts) {
                          m_textBytes -= utf8Size(texts.view(record));
                          texts.removeAt(record);
                      },
                      [&](auto &numbers) { numbers.erase(numbers.begin() + static_cast<std::ptrdiff_t>(record)); }});
}

} // namespace qir
