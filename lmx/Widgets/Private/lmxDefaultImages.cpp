#include <lmx/Widgets/Private/lmxDefaultImages.h>

#include <lmx/Widgets/lmxGlyphPainter.h>

#include <QLatin1String>

namespace lmx {

namespace {

void Plus(TGlyphPainter& glyph) {
    glyph.SetStrokeWidth(2);
    glyph.Polyline({{12, 6}, {12, 18}});
    glyph.Polyline({{6, 12}, {18, 12}});
}

void Bin(TGlyphPainter& glyph) {
    glyph.Polyline({{6, 8}, {18, 8}});
    glyph.Polyline({{10, 5}, {14, 5}});
    glyph.Polyline({{8, 10}, {8, 19}, {16, 19}, {16, 10}});
    glyph.Polyline({{12, 11}, {12, 16}});
}

void Pencil(TGlyphPainter& glyph) {
    glyph.Outline({{6, 18}, {6, 15}, {15, 6}, {18, 9}, {9, 18}});
    glyph.Polyline({{13, 8}, {16, 11}});
}

void TwoSheets(TGlyphPainter& glyph) {
    glyph.Outline({{10, 9}, {18, 9}, {18, 19}, {10, 19}});
    glyph.Polyline({{7, 15}, {6, 15}, {6, 5}, {14, 5}, {14, 6}});
}

void LensOverShape(TGlyphPainter& glyph) {
    glyph.Polyline({{8, 18}, {4, 13}, {7, 5}, {17, 5}, {19, 8}});
    glyph.Circle({14, 13}, 4);
    glyph.Polyline({{17, 16}, {20, 19}});
}

void Pointer(TGlyphPainter& glyph) {
    glyph.Polygon({{4, 2}, {4, 13}, {7, 10}, {9, 14}, {11, 13}, {9, 9}, {12, 9}});
}

struct TDefaultImage {
    const char* Name;
    TSize Size;
    TGlyph Glyph;
};

const TDefaultImage Images[] = {
    {"MapWindowFactory.AddLayer", {24, 24}, Plus},
    {"MapWindowFactory.DeleteLayer", {24, 24}, Bin},
    {"MapWindowFactory.Edit", {24, 24}, Pencil},
    {"MapWindowFactory.Copy", {24, 24}, TwoSheets},
    {"MapWindowFactory.ExploreShape", {24, 24}, LensOverShape},
    {"MapWindowFactory.Tools.None", {16, 16}, Pointer},
};

} // namespace

QImage DefaultImage(const QString& name, double ratio, const QColor& ink) {
    for (const TDefaultImage& image : Images)
        if (name == QLatin1String(image.Name))
            return RenderGlyph(image.Glyph, image.Size, ratio, ink);
    return {};
}

} // namespace lmx
