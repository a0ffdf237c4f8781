#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <QString>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

namespace lmx {

/// What a value outside all classes gets.
enum class TOutOfRangePolicy {
    orpReturnNil,    ///< no class
    orpClosestMatch, ///< the class at the end that the value lies beyond; nothing in a gap between two classes
};

/// One colour and one label for a band of values, both ends inside.
class LMX_EXPORT TColorClass {
public:
    TColorClass() = default;
    TColorClass(const QString& name, float min, float max, TColor32 color)
        : FName(name),
          FMinValue(min),
          FColor(color),
          FMaxValue(max) {}
    /// A copy.
    /// @throws EExArgumentNilException if `source` is nil.
    explicit TColorClass(const TColorClass* source);
    TColorClass(const TColorClass&) = default;
    TColorClass& operator=(const TColorClass& other);

    const QString& GetName() const { return FName; } ///< the label, possibly empty
    void SetName(const QString& name) { FName = name; }
    float GetMinValue() const { return FMinValue; }
    void SetMinValue(float value) {
        FMinValue = value;
        CountChange();
    }
    TColor32 GetColor() const { return FColor; }
    void SetColor(TColor32 color) {
        FColor = color;
        CountChange();
    }
    float GetMaxValue() const { return FMaxValue; }
    void SetMaxValue(float value) {
        FMaxValue = value;
        CountChange();
    }

    /// `min <= value <= max`. Never true where one of the three is no number.
    bool InRange(float value) const { return FMinValue <= value && value <= FMaxValue; }

    TValueRange GetRange() const { return {FMinValue, FMaxValue}; }

    /// The name as it stands; the text of the range if nothing but blanks and control characters are in the name.
    QString GetLabel() const;

    /// `("name":min:max:#AARRGGBB)`: the name with C-style escapes, the bounds with four decimals in the current format
    /// settings. A bound that is no finite number gives a text that cannot be read.
    QString Serialize() const;

    /// Sets the fields from the text form; what follows its closing parenthesis is not looked at. The name stays
    /// escaped as it stands in the text. A failure of the shape changes nothing; a bound or colour that does not
    /// convert leaves the fields before it set, in the order name, minimum, maximum, colour.
    /// @throws EArgumentException "Str" for an empty text.
    /// @throws Exception "Expected: (", `Expected: "`, "Expected: :" or "Expected: )".
    /// @throws EConvertError for an invalid bound or colour.
    void DeSerialize(const QString& text);

    /// How often any class got another bound or colour: whoever keeps something made of many classes looks them through
    /// only after such a change.
    static std::uint64_t GetChangeCount();

private:
    static void CountChange();

    QString FName;
    float FMinValue = 0;
    TColor32 FColor = 0;
    float FMaxValue = 0;
};

/// Classes in a meaningful order: of those that contain a value the first one wins. They may overlap and leave gaps.
class LMX_EXPORT IColorClasses {
public:
    virtual ~IColorClasses() = default;

    /// The list itself, for reading and changing. Nobody is told of a change.
    virtual TObjectList<TColorClass>& GetClasses() = 0;
    virtual const TObjectList<TColorClass>& GetClasses() const = 0;

    /// The first class that contains the value. Where there is none, orpClosestMatch gives a value at or below the
    /// lowest minimum the class of that minimum, and a value at or above the highest maximum the class of that maximum
    /// (the first such class in list order). Everything else is null: also a value in a gap between two classes.
    /// A value that is no number has the lowest minimum as its closest match. The class is lent by the list.
    /// The classes are sorted after each change, at the first call, and then searched by halving.
    virtual TColorClass* GetClass(TOutOfRangePolicy policy, float value) const = 0;

    /// The text forms of the classes, joined by commas, without blanks; an empty text for an empty list.
    virtual QString Serialize() const = 0;

    /// Replaces the classes by those of a text, as DeSerializeColorClasses reads them. The list is empty after a
    /// failure.
    virtual void DeSerialize(const QString& text) = 0;
};

/// The text forms of the classes, joined by commas, without blanks.
LMX_EXPORT QString SerializeColorClasses(std::span<const TColorClass* const> classes);

/// The classes of a text. Reading ends without a failure where a class does not have the outline of one
/// (`("name":` and a `)` somewhere) or no comma follows it. Blanks are not skipped, not even leading ones.
/// @throws Exception, EConvertError as TColorClass::DeSerialize, for a class with the outline and another fault.
LMX_EXPORT std::vector<std::unique_ptr<TColorClass>> DeSerializeColorClasses(const QString& text);

class LMX_EXPORT TColorClassesFactory {
public:
    /// An empty list.
    static std::shared_ptr<IColorClasses> GetObject();

    /// A copy, class by class.
    /// @throws EExArgumentNilException if `source` is nil.
    static std::shared_ptr<IColorClasses> GetObject(const std::shared_ptr<IColorClasses>& source);

    /// Copies of the classes; the given ones stay with the caller.
    /// @throws EExArgumentNilException if one of them is nil.
    static std::shared_ptr<IColorClasses> GetObject(std::span<const TColorClass* const> classes);

    /// Copies of the classes: `GetObject({{"Dry", 0, 50, 0xFF8B4513}, {"Wet", 50, 400, 0xFF0000FF}})`.
    static std::shared_ptr<IColorClasses> GetObject(std::initializer_list<TColorClass> classes);

    /// A list read from its text form, as DeSerializeColorClasses reads it.
    static std::shared_ptr<IColorClasses> GetObject(const QString& text);

    /// Whether this factory made the list. Then its classes alone say what a value gets; a host's own list may give
    /// any class.
    static bool IsMaker(const IColorClasses& classes);
};

} // namespace lmx
