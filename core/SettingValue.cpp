#include "core/SettingValue.h"

qint32 SettingValue::toInt(bool* ok) const
{
    if (ok)
        *ok = true;
    switch (type()) {
    case Type::Empty:
        return 0;
    case Type::Int16:
        return std::get<1>(value_);
    case Type::Int32:
        return std::get<2>(value_);
    case Type::Boolean:
        return std::get<3>(value_) ? -1 : 0;
    case Type::Text: {
        bool good = false;
        const qint32 v = std::get<4>(value_).trimmed().toInt(&good);
        if (ok)
            *ok = good;
        return good ? v : 0;
    }
    }
    return 0;
}

bool SettingValue::toBool() const
{
    if (type() == Type::Boolean)
        return std::get<3>(value_);
    if (type() == Type::Text) {
        const QString t = std::get<4>(value_).trimmed().toLower();
        return t == QLatin1String("true") || t == QLatin1String("#true#") || (t.toInt() != 0);
    }
    return toInt() != 0;
}

QString SettingValue::toText() const
{
    switch (type()) {
    case Type::Empty:
        return {};
    case Type::Int16:
    case Type::Int32:
        return QString::number(toInt());
    case Type::Boolean:
        return std::get<3>(value_) ? QStringLiteral("True") : QStringLiteral("False");
    case Type::Text:
        return std::get<4>(value_);
    }
    return {};
}
