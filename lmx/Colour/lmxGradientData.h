#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxObjectList.h>

#include <QString>

#include <memory>
#include <vector>

namespace lmx {

class IGradient;
class TXmlNode;

/// A gradient description that is damaged or cannot become a gradient.
class LMX_EXPORT EGradientDataException : public Exception {
public:
    using Exception::Exception;
};

/// Where one end of a group lies: nowhere, at the lowest or highest value of the data, or at a value.
enum class TStartEndAtKind { sekNotSpecified, sekMin, sekMax, sekValue };

struct TStartEndAt {
    TStartEndAtKind Kind = TStartEndAtKind::sekNotSpecified;
    double Value = 0; ///< for sekValue

    friend bool operator==(const TStartEndAt&, const TStartEndAt&) = default;
};

/// "min", "max", the value with four decimals in the current format settings, or an empty text.
LMX_EXPORT QString StartEndAtValueToString(const TStartEndAt& at);

/// The inverse, in the current format settings. "min" and "max" are matched exactly; what is none of the texts is
/// sekNotSpecified.
LMX_EXPORT TStartEndAt StringToStartEndAtValue(const QString& text);

/// "red,green,blue,alpha" in decimal.
LMX_EXPORT QString Color32ToGradientDataColorValue(TColor32 color);

/// A colour from `#AARRGGBB`, or from three or four integers separated by commas: red, green, blue and alpha, which is
/// 255 if absent.
/// @throws EGradientDataException "Color value length is invalid: ..." for fewer than 6 characters (which black, as
/// "0,0,0", has), "Hex color value is invalid: ..." or "Comma-seperated color value is invalid: ..." for any other
/// text, followed by the text and by the reason.
LMX_EXPORT TColor32 GradientDataColorValueToColor32(const QString& text);

/// Colours that are evenly spaced from the start of the group to its end.
class LMX_EXPORT TGradientGroup {
public:
    /// The list itself, for reading and changing.
    std::vector<TColor32>& GetColors() { return FColors; }
    const std::vector<TColor32>& GetColors() const { return FColors; }
    const TStartEndAt& GetStartAt() const { return FStartAt; }
    void SetStartAt(const TStartEndAt& at) { FStartAt = at; }
    const TStartEndAt& GetEndAt() const { return FEndAt; }
    void SetEndAt(const TStartEndAt& at) { FEndAt = at; }

    /// A group from an element: the attributes "startAtValue" and "endAtValue", and the texts of the children "color".
    /// Other children are skipped.
    /// @throws EGradientDataException as GradientDataColorValueToColor32.
    static std::unique_ptr<TGradientGroup> LoadFromNode(const TXmlNode& node);

    /// Writes the colours, and the end of the group as "startAtValue". The start is not written: what is read back has
    /// the old end for its start, and no end.
    void SaveToNode(TXmlNode node) const;

private:
    std::vector<TColor32> FColors;
    TStartEndAt FEndAt;
    TStartEndAt FStartAt;
};

/// The description of a gradient by groups of colours whose ends may be tied to the range of the data. It becomes a
/// gradient once that range is known.
///
/// In text it is an XML document with the root "gradient", which has "group" elements with "color" elements inside.
class LMX_EXPORT IGradientData {
public:
    virtual ~IGradientData() = default;

    /// The list itself, for reading and changing.
    virtual TObjectList<TGradientGroup>& GetGroups() = 0;
    virtual const TObjectList<TGradientGroup>& GetGroups() const = 0;
    /// The file that the groups were loaded from; empty otherwise.
    virtual QString GetFileName() const = 0;

    virtual QString SaveToText() const = 0;
    /// Replaces the file in one step; the file name of the data stays as it was.
    /// @throws EFileException if it cannot be written.
    virtual void SaveToFile(const QString& fileName) const = 0;

    /// Replaces the groups and clears the file name. After a failure there are no groups, or those before it.
    /// @throws EXmlException for a text that is no XML document.
    /// @throws EGradientDataException `Root node must be named "gradient"`, and as TGradientGroup::LoadFromNode.
    virtual void LoadFromText(const QString& text) = 0;

    /// As LoadFromText, from a file, whose name is kept after a success.
    /// @throws EFileException if it cannot be read; the groups stay as they were.
    /// @throws EFileFormatException if it is no XML document.
    /// @throws EGradientDataException as LoadFromText.
    virtual void LoadFromFile(const QString& fileName) = 0;

    /// A new gradient, 0 to 1 of which stands for `min` to `max`. A group that ends at a value below `min` or starts at
    /// one above `max` is left out; of one that reaches beyond the range all stops are kept, outside 0 to 1. Stops
    /// stand in the order of the groups. Positions are computed in extended and rounded once; the stops of a group of
    /// one colour and those of a range of one value have positions that are no finite number.
    /// @throws EGradientDataException "No color groups have been added", "Not supported StartEndAtKind" for a group
    /// within the range with an end that is not specified.
    virtual std::shared_ptr<IGradient> CreateGradient(double min, double max) const = 0;
};

class LMX_EXPORT TGradientDataFactory {
public:
    /// No groups.
    static std::shared_ptr<IGradientData> GetObject();
};

} // namespace lmx
