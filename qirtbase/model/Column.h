#pragma once

#include "base/PackedTexts.h"
#include "base/columns/ColumnBlock.h"
#include "base/columns/FittingNumber.h"

#include <QString>
#include <QVariant>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

namespace qir {

/// A value of any field: a number, or a text for text fields. Every number that a field can hold is a double's.
using CellValue = std::variant<double, QString>;

/// The values of one field, one for each record, packed by type. Records count from 0 here and are the caller's to keep
/// in range; texts are well-formed and fit their field, numbers come from fittingNumber().
class Column {
public:
    using Storage = std::variant<std::vector<std::uint8_t>, // bool, byte
                                 std::vector<std::int16_t>, // int
                                 std::vector<std::int32_t>, // long
                                 std::vector<double>,       // double, date
                                 PackedTexts>;              // text

    /// `records` zeros or empty texts.
    explicit Column(ColumnType type, std::size_t records = 0);
    /// Takes values that obey the rules of the type; the storage is the type's own. `textBytes` is what the texts take
    /// in UTF-8, all together.
    Column(ColumnType type, Storage storage, std::size_t textBytes);

    ColumnType type() const { return m_type; }
    bool isText() const { return m_type == ColumnType::Text; }
    std::size_t size() const;
    /// Calls a function with the values: one of the alternatives of Storage.
    template<class Function>
    decltype(auto) visit(Function &&function) const {
        return std::visit([&](const auto &held) -> decltype(auto) { return function(valuesOf(held)); }, m_held);
    }
    /// Bytes of all texts in UTF-8; 0 for numbers.
    std::size_t textBytes() const { return m_textBytes; }
    /// Bytes of memory held.
    std::size_t memory() const;

    CellValue value(std::size_t record) const;
    /// As the component hands it out: int, double or QString.
    QVariant variant(std::size_t record) const;
    /// The text of the value into a string that keeps its memory: nothing is allocated once it is large enough.
    void readText(std::size_t record, QString &text) const;

    /// Values from `first` on, at least one and at most `count`: as many as stand together in memory.
    ColumnBlock block(std::size_t first, std::size_t count) const;

    /// True when the value is `number` bit for bit: 0 and -0 are two values.
    bool holds(std::size_t record, double number) const;
    bool holds(std::size_t record, const QString &text) const;

    /// Replace a value; the kind is the column's. Unchanged when they throw (std::bad_alloc, std::length_error).
    void set(std::size_t record, double number);
    void set(std::size_t record, const QString &text);
    void set(std::size_t record, const CellValue &value);

    /// Makes sure that the next append() does not throw.
    void makeRoom();
    /// Appends a zero or an empty text.
    void append();
    void insert(std::size_t record, const CellValue &value);
    void remove(std::size_t record);

private:
    /// Texts in memory of their own, none as long as there are no texts: most of what a column is, it is for them.
    class Texts {
    public:
        Texts() = default;
        Texts(const Texts &other)
            : m_texts(other.m_texts ? std::make_unique<PackedTexts>(*other.m_texts) : nullptr) {}
        Texts(Texts &&) noexcept = default;
        Texts &operator=(const Texts &other) { return *this = Texts(other); }
        Texts &operator=(Texts &&) noexcept = default;
        ~Texts() = default;

        const PackedTexts &values() const;
        PackedTexts &values();

    private:
        std::unique_ptr<PackedTexts> m_texts;
    };

    template<class Numbers>
    static Numbers &valuesOf(Numbers &numbers) {
        return numbers;
    }
    static const PackedTexts &valuesOf(const Texts &texts) { return texts.values(); }
    static PackedTexts &valuesOf(Texts &texts) { return texts.values(); }
    template<class Function>
    decltype(auto) change(Function &&function) {
        return std::visit([&](auto &held) -> decltype(auto) { return function(valuesOf(held)); }, m_held);
    }
    PackedTexts &texts() { return std::get<Texts>(m_held).values(); }

    ColumnType m_type;
    std::variant<std::vector<std::uint8_t>, std::vector<std::int16_t>, std::vector<std::int32_t>, std::vector<double>,
                 Texts>
        m_held;
    std::size_t m_textBytes = 0;
};

} // namespace qir
