#pragma once

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxSet.h>
#include <lmx/Runtime/lmxText.h>

#include <QString>
#include <QStringList>
#include <QStringView>

#include <cstddef>
#include <span>

// The text form of a set of an enumeration: the names of its members, in the order of the enumeration, joined by
// commas.

namespace lmx {

template<class Enum>
QString SetToString(TSet<Enum> set, std::span<const QStringView> names) {
    QStringList members;
    for (std::size_t i = 0; i < names.size(); ++i)
        if (set.Contains(static_cast<Enum>(i)))
            members += names[i].toString();
    return members.join(u',');
}

/// @throws EConvertError with the text of `failure` for an unknown name.
template<class Enum>
TSet<Enum> StringToSet(const QString& text, std::span<const QStringView> names, const QString& failure) {
    TSet<Enum> set;
    for (const QString& piece : Split(text, u',')) {
        std::size_t i = 0;
        while (i < names.size() && piece != names[i])
            ++i;
        if (i == names.size())
            throw EConvertError(failure);
        set.Include(static_cast<Enum>(i));
    }
    return set;
}

} // namespace lmx
