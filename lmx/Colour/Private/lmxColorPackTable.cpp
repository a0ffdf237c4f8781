#include <lmx/Colour/Private/lmxColorPackTable.h>

// Those of our own run through CIELAB (D65): the lightness changes by equal steps from end to end, or from the middle
// to both ends; hue and chroma run between a few given ones, and chroma gives way where sRGB has no such colour.

namespace lmx {

namespace {

struct TOrigin {
    const char16_t* Source;
    const char16_t* Licence;
};

constexpr TOrigin Viridis = {u"N. Smith, S. van der Walt, E. Firing: colormaps.py of BIDS/colormap", u"CC0-1.0"};
constexpr TOrigin Inferno = {u"N. Smith, S. van der Walt: colormaps.py of BIDS/colormap", u"CC0-1.0"};
constexpr TOrigin Cividis = {u"J. Nuñez, C. Anderton, R. Renslow, PLoS ONE 13 (2018), doi:10.1371/journal.pone.0199239",
                             u"CC0-1.0"};
constexpr TOrigin Cubehelix = {
    u"The formula of D. A. Green, Bull. Astr. Soc. India 39, 289 (2011): start 0.5, rotations "
    u"-1.5, hue 1, gamma 1",
    u"CC0-1.0"};
constexpr TOrigin ColorBrewer = {
    u"C. Brewer, M. Harrower, The Pennsylvania State University: ColorBrewer 2.0, RdBu with "
    u"11 classes, reversed",
    u"Apache-2.0"};
constexpr TOrigin Tol = {u"P. Tol, SRON: Colour Schemes", u"BSD-3-Clause"};
constexpr TOrigin Own = {u"Made for this library", u"CC0-1.0"};

TColorScale Scale(const char16_t* name, const char16_t* group, const TOrigin& origin, TColorScaleKind kind,
                  std::initializer_list<TColor32> colors) {
    TColorScale scale{QString::fromUtf16(name),
                      QString::fromUtf16(group),
                      QString::fromUtf16(origin.Source),
                      QString::fromUtf16(origin.Licence),
                      kind,
                      {}};
    for (const TColor32 color : colors)
        scale.Colors.push_back(color | 0xFF000000U);
    return scale;
}

} // namespace

std::vector<TColorScale> ColorPackTable() {
    using enum TColorScaleKind;
    return {
        Scale(u"Viridis", u"Sequential", Viridis, cskSequential,
              {0x440154, 0x481A6C, 0x472F7D, 0x414487, 0x39568C, 0x31688E, 0x2A788E, 0x23888E, 0x1F988B, 0x22A884,
               0x35B779, 0x54C568, 0x7AD151, 0xA5DB36, 0xD2E21B, 0xFDE725}),
        Scale(u"Inferno", u"Sequential", Inferno, cskSequential,
              {0x000004, 0x0C0826, 0x240C4F, 0x420A68, 0x5D126E, 0x781C6D, 0x932667, 0xAE305C, 0xC73E4C, 0xDD513A,
               0xED6925, 0xF8850F, 0xFCA50A, 0xFAC62D, 0xF2E661, 0xFCFFA4}),
        Scale(u"Cividis", u"Sequential", Cividis, cskSequential,
              {0x00224E, 0x002E6C, 0x1E3A6F, 0x35456C, 0x47516C, 0x575D6D, 0x666970, 0x757575, 0x848279, 0x948E77,
               0xA59C74, 0xB7A96E, 0xC8B866, 0xDBC75A, 0xEED649, 0xFEE838}),
        Scale(u"Cubehelix", u"Sequential", Cubehelix, cskSequential,
              {0x000000, 0x160C1F, 0x1A213E, 0x163D4E, 0x175A49, 0x2B6F39, 0x54792F, 0x877A3A, 0xB5795E, 0xD07E93,
               0xD490C6, 0xCAABE8, 0xC1CAF3, 0xC8E4F0, 0xE0F5F0, 0xFFFFFF}),
        Scale(u"Blues", u"Sequential", Own, cskSequential,
              {0xE6F6FF, 0xCDE9F9, 0xB6DCF2, 0x9ECFEB, 0x85C3E4, 0x6AB6DE, 0x51A8D7, 0x359BD0, 0x038DC8, 0x027FB9,
               0x0271AA, 0x00639D, 0x00568F, 0x004981, 0x003C74, 0x002F66}),
        Scale(u"Oranges", u"Sequential", Own, cskSequential,
              {0xFAF3E0, 0xF3E5C4, 0xECD7A8, 0xE6C88C, 0xE0B971, 0xDAA956, 0xD5993F, 0xD18929, 0xCC770E, 0xC46700,
               0xBB5700, 0xAF4800, 0xA33900, 0x972A00, 0x8A1A00, 0x7B0900}),
        Scale(u"Grey", u"Sequential", Own, cskSequential,
              {0x181818, 0x232323, 0x303030, 0x3D3D3D, 0x4B4B4B, 0x595959, 0x676767, 0x767676, 0x858585, 0x949494,
               0xA4A4A4, 0xB4B4B4, 0xC4C4C4, 0xD5D5D5, 0xE5E5E5, 0xF6F6F6}),
        Scale(u"Blue to red", u"Diverging", ColorBrewer, cskDiverging,
              {0x053061, 0x2166AC, 0x4393C3, 0x92C5DE, 0xD1E5F0, 0xF7F7F7, 0xFDDBC7, 0xF4A582, 0xD6604D, 0xB2182B,
               0x67001F}),
        Scale(u"Purple to green", u"Diverging", Own, cskDiverging,
              {0x552377, 0x6C388E, 0x844EA7, 0x9B66BB, 0xAE82C9, 0xC29ED6, 0xD4BBE1, 0xE5D8EC, 0xF6F6F6, 0xD0E2CE,
               0xAACDA7, 0x84B883, 0x5EA264, 0x338D46, 0x067631, 0x005D26, 0x00461C}),
        Scale(u"Phase", u"Cyclic", Own, cskCyclic,
              {0xDDDDDD, 0xA8C9F0, 0x67B5FC, 0x02A0F5, 0x008AD4, 0x0174B3, 0x015F94, 0x254A6B, 0x353535, 0x663D2F,
               0x90452B, 0xB6502E, 0xD4623C, 0xE87B55, 0xF1997A, 0xEEBAA8, 0xDDDDDD}),
        Scale(u"Season", u"Cyclic", Own, cskCyclic,
              {0xDDDDDD, 0xAACFAD, 0x79BF81, 0x4CAC5E, 0x269744, 0x158036, 0x216831, 0x2E4F32, 0x353535, 0x583E5E,
               0x794787, 0x9754AB, 0xB166C7, 0xC57ED9, 0xD39CE1, 0xDABCE1, 0xDDDDDD}),
        Scale(u"Bright", u"Categorical", Tol, cskCategorical,
              {0x4477AA, 0x66CCEE, 0x228833, 0xCCBB44, 0xEE6677, 0xAA3377, 0xBBBBBB}),
        Scale(u"Muted", u"Categorical", Tol, cskCategorical,
              {0x332288, 0x88CCEE, 0x44AA99, 0x117733, 0x999933, 0xDDCC77, 0xCC6677, 0x882255, 0xAA4499}),
        Scale(u"Temperature", u"Climate", Own, cskDiverging,
              {0x2F1F7A, 0x153F97, 0x015CA8, 0x0077BB, 0x1F92D0, 0x52ACDB, 0x8AC4E3, 0xBFDAEA, 0xF1F1F1, 0xE8D4AF,
               0xDEB670, 0xD3983A, 0xC97618, 0xBD5200, 0xA83100, 0x8D0F00, 0x690003}),
        Scale(u"Rain", u"Climate", Own, cskSequential,
              {0xFCF7DF, 0xE8EAC8, 0xD0DEB3, 0xB5D3A2, 0x95C897, 0x73BC95, 0x4CAF96, 0x0AA299, 0x029299, 0x028296,
               0x027291, 0x00628D, 0x005386, 0x00447F, 0x00347C, 0x102079}),
        Scale(u"Anomaly", u"Climate", Own, cskDiverging,
              {0x003A7B, 0x005096, 0x0068B1, 0x0181CC, 0x429ADB, 0x6FB2E4, 0x9EC9EB, 0xCCDFF1, 0xF6F6F6, 0xF5D7C7,
               0xF1B79B, 0xEA9773, 0xE07652, 0xD45233, 0xBB3423, 0x9E1918, 0x7D0011}),
        Scale(u"Rain anomaly", u"Climate", Own, cskDiverging,
              {0x693400, 0x80490A, 0x965F1A, 0xAB7630, 0xBC8F52, 0xCCA974, 0xDCC29D, 0xEADCC9, 0xF6F6F6, 0xC8E3E2,
               0x99D0CE, 0x6ABCBA, 0x42A6A4, 0x01908E, 0x007878, 0x006162, 0x004A4C}),
        Scale(u"Relief", u"Climate", Own, cskRelief,
              {0x001F47, 0x003264, 0x004781, 0x005D9E, 0x0474BB, 0x268CCC, 0x44A5DC, 0x62BEEB, 0x81D7F9, 0x0B572C,
               0x3A6A2C, 0x627C2D, 0x8C8C36, 0xB79B45, 0xD9AD66, 0xF7C088, 0xFBDCC0, 0xF9F9F9}),
        Scale(u"Sea ice", u"Climate", Own, cskSequential,
              {0x062152, 0x082E63, 0x093B74, 0x084985, 0x035897, 0x0167A8, 0x1876B2, 0x2D86BC, 0x4295C5, 0x55A5CE,
               0x6AB4D6, 0x87C3DC, 0xA3D1E3, 0xBEDFEA, 0xD9EDF2, 0xF5FAFC}),
    };
}

} // namespace lmx
