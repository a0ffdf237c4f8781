#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Graphics/lmxFloatPoint.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <span>
#include <variant>
#include <vector>

namespace lmx {

/// Which part of a text stands at its position.
enum class THAlign { haLeft, haCenter, haRight };
enum class TVAlign { vaTop, vaMiddle, vaBottom };

/// Writes one colour into every pixel, alpha included.
struct TClearItem {
    TColor32 Color = 0;

    friend bool operator==(const TClearItem&, const TClearItem&) = default;
};

/// A filled contour, which closes by itself, and its outline.
struct TPolygonItem {
    TFloatPoints Points;
    TColor32 FillColor = 0;   ///< 0, or any other of alpha 0: not filled
    TColor32 StrokeColor = 0; ///< likewise no outline
    double StrokeSize = 1;    ///< 0 or less: no outline

    friend bool operator==(const TPolygonItem&, const TPolygonItem&) = default;
};

/// One line of text. Sizes below 0 are automatic.
struct TTextItem {
    QString Text;
    QString FontName = {};
    double FontSize = -1;      ///< height of the font; automatic: the largest whose text fits Width and Height; none if
                               ///< that is less than 4 pixels, as letters are specks then
    TFloatPoint Position = {}; ///< of what the alignments name
    double Width = -1;         ///< automatic: as wide as the text is
    double Height = -1;        ///< automatic: as high as the document
    TColor32 FillColor = 0;
    THAlign HorizontalAlign = THAlign::haLeft;
    TVAlign VerticalAlign = TVAlign::vaTop;

    friend bool operator==(const TTextItem&, const TTextItem&) = default;
};

using TVectorDocItem = std::variant<TClearItem, TPolygonItem, TTextItem>;

/// A small drawing, independent of pixels. Its units count from the top left corner, Y downwards; all lengths of items
/// are in them.
struct TVectorDoc {
    double Width = 0;
    double Height = 0;
    std::vector<TVectorDocItem> Items; ///< a later one lies on the ones before

    friend bool operator==(const TVectorDoc&, const TVectorDoc&) = default;
};

/// "X,Y" of each point, one blank between two: "256,53 203.5,203". The same in every locale, and exact.
LMX_EXPORT QString FloatPointsToString(std::span<const TFloatPoint> points);

/// The inverse; blanks may be more than one. An empty text is no points.
/// @throws EConvertError "Invalid points text".
LMX_EXPORT TFloatPoints StringToFloatPoints(const QString& text);

} // namespace lmx
