#pragma once
// One typed element of the station settings table: empty, 16-bit or 32-bit integer,
// Boolean or text. Conversions follow what a typed settings file needs: a Boolean reads as
// -1/0 when taken as a number, a numeric text as its number.
#include <QString>
#include <variant>

class SettingValue {
public:
    enum class Type { Empty, Int16, Int32, Boolean, Text };

    SettingValue() = default;
    static SettingValue int16(qint16 v) { return SettingValue(Storage(std::in_place_index<1>, v)); }
    static SettingValue int32(qint32 v) { return SettingValue(Storage(std::in_place_index<2>, v)); }
    static SettingValue boolean(bool v) { return SettingValue(Storage(std::in_place_index<3>, v)); }
    static SettingValue text(const QString& v) { return SettingValue(Storage(std::in_place_index<4>, v)); }

    Type type() const { return static_cast<Type>(value_.index()); }
    bool isEmpty() const { return type() == Type::Empty; }
    bool isNumber() const { return type() == Type::Int16 || type() == Type::Int32; }

    // Integer value; a Boolean is -1 or 0, a text its number (0 when it holds none).
    qint32 toInt(bool* ok = nullptr) const;
    // Non-zero numbers and the texts "true"/"-1"/"1" are true.
    bool toBool() const;
    // Text value; numbers in decimal, Booleans as "True"/"False", empty as "".
    QString toText() const;

    bool operator==(const SettingValue& other) const = default;

private:
    using Storage = std::variant<std::monostate, qint16, qint32, bool, QString>;
    explicit SettingValue(Storage v)
        : value_(std::move(v))
    {
    }
    Storage value_;
};
