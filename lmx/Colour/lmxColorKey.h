#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

namespace lmx {

/// A colour with the label that legends show.
struct LMX_EXPORT TColorKeyItem {
    QString Name;
    TColor32 Color = 0; ///< alpha included

    TColorKeyItem() = default;
    TColorKeyItem(const QString& name, TColor32 color) : Name(name), Color(color) {}

    /// `("name":#AARRGGBB)`, the name with C-style escapes.
    QString Serialize() const;

    /// Sets both fields from the text form; what follows its closing parenthesis is not looked at. After a failure
    /// both are unchanged.
    /// @throws EArgumentException "Str" for an empty text.
    /// @throws Exception "Expected: (", `Expected: "`, "Expected: :", "Expected: #" or "Expected: )".
    /// @throws EConvertError for an invalid escape or colour.
    void DeSerialize(const QString& text);

    friend bool operator==(const TColorKeyItem&, const TColorKeyItem&) = default;
};

/// The ordered list of named colours behind a palette; its order is the order of the palette's bands.
class LMX_EXPORT IColorKey {
public:
    virtual ~IColorKey() = default;

    /// The list itself, for reading and changing. Nobody is told of a change.
    virtual std::vector<TColorKeyItem>& GetColors() = 0;
    virtual const std::vector<TColorKeyItem>& GetColors() const = 0;

    /// The text forms of the items, joined by commas, without blanks; an empty text for an empty key.
    virtual QString Serialize() const = 0;

    /// Replaces the entries by those of a text. Reading ends without a failure where an item does not have the right
    /// shape or no comma follows it, and the entries read so far stay.
    /// @throws EConvertError if an item of the right shape has an invalid escape or colour; the entries before stay.
    virtual void DeSerialize(const QString& text) = 0;
};

class LMX_EXPORT TColorKeyFactory {
public:
    /// An empty key.
    static std::shared_ptr<IColorKey> GetObject();

    /// A copy, item by item.
    /// @throws EExArgumentNilException if `source` is nil.
    static std::shared_ptr<IColorKey> GetObject(const std::shared_ptr<IColorKey>& source);

    static std::shared_ptr<IColorKey> GetObject(std::span<const TColorKeyItem> items);
    static std::shared_ptr<IColorKey> GetObject(std::initializer_list<TColorKeyItem> items);

    /// A key read from its text form, as IColorKey::DeSerialize reads it.
    static std::shared_ptr<IColorKey> GetObject(const QString& text);
};

} // namespace lmx
