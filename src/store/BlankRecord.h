#pragma once

#include "store/VantixJsonData.h"

#include <QString>

#include <type_traits>

namespace ProductEditor {

// The title a record is listed with when it is added or removed: a feature's or an
// extension's title, a license's text; other records have none.
template <typename Value>
QString TitleOf(const Value &record)
{
    if constexpr (std::is_same_v<Value, QString>)
        return record;
    else if constexpr (std::is_same_v<Value, VantixFeatureData> || std::is_same_v<Value, ExtensionInfo>)
        return record.title;
    else
        return QString();
}

// A new record of its kind under `title`: what an added record is described against.
template <typename Value>
Value BlankWithTitle(const QString &title)
{
    Value blank;
    if constexpr (std::is_same_v<Value, QString>)
        blank = title;
    else if constexpr (std::is_same_v<Value, VantixFeatureData> || std::is_same_v<Value, ExtensionInfo>)
        blank.title = title;
    return blank;
}

} // namespace ProductEditor
