#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Graphics/lmxFloatPoint.h>
#include <lmx/Graphics/lmxFont32.h>
#include <lmx/Graphics/lmxPixelMemory.h>
#include <lmx/Graphics/lmxWideRect.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

QT_BEGIN_NAMESPACE
class QImage;
class QPainter;
QT_END_NAMESPACE

namespace lmx {

/// How the pixels of a bitmap go onto another one that it is drawn on.
enum class TDrawMode {
    dmOpaque,      ///< copied, alpha included
    dmBlend,       ///< blended by their alpha times the master alpha
    dmCustom,      ///< as dmOpaque
    dmTransparent, ///< copied, except those that equal OuterColor
};

/// What blending does to the bitmap that is drawn on (lmxBlend.h).
enum class TCombineMode {
    cmBlend, ///< it counts as opaque, and is afterwards
    cmMerge, ///< its own alpha counts: for bitmaps that begin transparent and are drawn onto another one later
};

/// Layout of Textout. Lines break at CR, LF and CRLF, with dtWordBreak also between words; a word that is longer than
/// the line is not broken. `&` underlines the next letter and `&&` is one `&`, unless dtNoPrefix is given.
enum TTextFlags : unsigned {
    dtLeft = 0,
    dtCenter = 1,
    dtRight = 2,
    dtVCenter = 4, ///< with dtSingleLine only
    dtWordBreak = 16,
    dtSingleLine = 32,
    dtNoClip = 256,
    dtNoPrefix = 2048,
};

/// A picture of 32-bit pixels with straight alpha, row 0 at the top, rows contiguous, and the operations that draw on
/// it. Pixel (x, y) is the area from (x, y) to (x + 1, y + 1). Everything that is drawn is clipped to the bitmap; on a
/// bitmap without pixels drawing does nothing. "Raw" means that the colour is stored as it is, alpha included.
/// A bitmap belongs to one thread at a time; text needs a QGuiApplication. One that was moved from has no pixels.
/// Whatever needs memory raises EOutOfMemory if there is none; the bitmap's size and settings are then as they were.
class LMX_EXPORT TBitmap32 {
public:
    TBitmap32() = default;
    TBitmap32(std::int32_t width, std::int32_t height) { SetSize(width, height); }

    std::int32_t GetWidth() const { return FMemory.GetWidth(); }
    std::int32_t GetHeight() const { return FMemory.GetHeight(); }
    TRect GetBounds() const { return {0, 0, GetWidth(), GetHeight()}; }
    bool IsEmpty() const { return FMemory.GetCount() == 0; }

    /// Negative sides become 0. New memory reads 0, and a bitmap without pixels holds none. False if the size was the
    /// present one, and then nothing changes.
    /// @throws EOutOfMemory
    bool SetSize(std::int32_t width, std::int32_t height);

    /// Writes `color` raw into every pixel.
    void Clear(TColor32 color = clBlack32);

    /// Pixels of this bitmap in one unit to the eye, where it is shown; 1 unless said. Nothing is scaled by it here:
    /// whoever draws marks of a fixed size does that.
    double GetDeviceRatio() const { return FDeviceRatio; }
    void SetDeviceRatio(double ratio) { FDeviceRatio = ratio; }

    // --- Pixels --------------------------------------------------------------------------------------------------

    /// First pixel of row `y`, 0 <= y < height.
    TColor32* ScanLine(std::int32_t y) { return FMemory.GetPixels() + RowOffset(y); }
    const TColor32* ScanLine(std::int32_t y) const { return FMemory.GetPixels() + RowOffset(y); }

    /// A pixel inside the bitmap; the position is not checked.
    TColor32& Pixel(std::int32_t x, std::int32_t y) { return ScanLine(y)[x]; }
    TColor32 Pixel(std::int32_t x, std::int32_t y) const { return ScanLine(y)[x]; }

    /// A pixel, or OuterColor outside the bitmap.
    TColor32 GetPixelS(std::int32_t x, std::int32_t y) const;
    /// Writes a pixel raw; outside the bitmap nothing happens.
    void SetPixelS(std::int32_t x, std::int32_t y, TColor32 color);

    // --- As the source of a drawing ------------------------------------------------------------------------------

    TDrawMode GetDrawMode() const { return FDrawMode; }
    void SetDrawMode(TDrawMode mode) { FDrawMode = mode; }

    /// Scales the alpha of every pixel in dmBlend; 255 leaves it, 0 draws nothing.
    std::uint8_t GetMasterAlpha() const { return FMasterAlpha; }
    void SetMasterAlpha(std::uint8_t alpha) { FMasterAlpha = alpha; }

    /// The colour that is left out in dmTransparent, all 32 bits compared. Also what lies outside the bitmap.
    TColor32 GetOuterColor() const { return FOuterColor; }
    void SetOuterColor(TColor32 color) { FOuterColor = color; }

    // --- Bitmaps on bitmaps: the source's draw mode, this bitmap's combine mode ----------------------------------

    TCombineMode GetCombineMode() const { return FCombineMode; }
    void SetCombineMode(TCombineMode mode) { FCombineMode = mode; }

    /// Draws `source` with its top left pixel at (x, y).
    void Draw(std::int32_t x, std::int32_t y, const TBitmap32& source);
    /// Draws this bitmap onto `destination`.
    void DrawTo(TBitmap32& destination, std::int32_t x = 0, std::int32_t y = 0) const { destination.Draw(x, y, *this); }

    /// Stretches the source rectangle to the destination rectangle, nearest neighbour: with both rectangles from their
    /// left edge, destination column i shows source column floor(i * source width / destination width), and likewise
    /// down the rows; a destination of one pixel shows the middle. How much of the destination lies outside never
    /// changes what a pixel shows. A source rectangle that leaves the source is cut and the destination along with it.
    /// If either is empty or inverted nothing is drawn. The cost depends on the visible destination alone.
    /// A bitmap may be drawn onto itself: it is read as it was before.
    void Draw(const TRect& destination, const TRect& sourceRect, const TBitmap32& source);
    void Draw(const TWideRect& destination, const TRect& sourceRect, const TBitmap32& source);

    /// A bitmap of that size with the pixels, raw, that stretched drawing of `sourceRect` would show, and with this
    /// bitmap's modes as a source.
    TBitmap32 Stretched(const TRect& sourceRect, std::int32_t width, std::int32_t height) const;

    // --- Rectangles; those that are empty or inverted draw nothing -----------------------------------------------

    /// Fills x1 <= x < x2, y1 <= y < y2 raw.
    void FillRectS(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, TColor32 color);
    void FillRectS(const TRect& rect, TColor32 color) {
        FillRectS(rect.Left, rect.Top, rect.Right, rect.Bottom, color);
    }
    /// The same, blended by the colour's alpha.
    void FillRectTS(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, TColor32 color);
    void FillRectTS(const TRect& rect, TColor32 color) {
        FillRectTS(rect.Left, rect.Top, rect.Right, rect.Bottom, color);
    }
    /// Draws the outermost pixels of the same area raw.
    void FrameRectS(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, TColor32 color);
    void FrameRectS(const TRect& rect, TColor32 color) {
        FrameRectS(rect.Left, rect.Top, rect.Right, rect.Bottom, color);
    }
    /// The same, blended by the colour's alpha, each pixel once.
    void FrameRectTS(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, TColor32 color);
    void FrameRectTS(const TRect& rect, TColor32 color) {
        FrameRectTS(rect.Left, rect.Top, rect.Right, rect.Bottom, color);
    }

    // --- Lines ---------------------------------------------------------------------------------------------------

    TColor32 GetPenColor() const { return FPenColor; }
    void SetPenColor(TColor32 color) { FPenColor = color; }

    /// Sets the pen of whole pixels.
    void MoveTo(std::int32_t x, std::int32_t y) { FPen = {x, y}; }
    /// A line of raw pixels in PenColor from the pen to (x, y), which gets the pen. The end pixel is left out.
    /// A pixel is n steps along the longer axis and the nearest number of steps along the shorter one, ties forward.
    void LineToS(std::int32_t x, std::int32_t y);
    /// LineToS to each of the points in turn.
    void LinesToS(std::span<const TPoint> points);

    /// Sets the pen of the antialiased lines, which name pixel centres: (3.0, 5.0) is exactly pixel (3, 5).
    void MoveToF(double x, double y) { FPenF = {x, y}; }
    /// An antialiased line in PenColor, one pixel thick, from the pen to (x, y), which gets the pen.
    void LineToFS(double x, double y);
    /// The same in the colours of the stipple, one after the other at each unit of length.
    void LineToFSP(double x, double y);

    /// Sets the colours of stippled lines and begins with the first one. Without colours such lines are black.
    void SetStipple(std::span<const TColor32> colors);
    /// Places in the stipple, counted in colours; between two of them they are mixed.
    double GetStippleCounter() const { return FStippleCounter; }
    void SetStippleCounter(double counter) { FStippleCounter = counter; }
    double GetStippleStep() const { return FStippleStep; }
    void SetStippleStep(double step) { FStippleStep = step; }

    // --- Text ----------------------------------------------------------------------------------------------------

    const TFont32& GetFont() const { return FFont; }
    TFont32& GetFont() { return FFont; }
    void SetFont(const TFont32& font) { FFont = font; }

    // Letters with hard and with smooth edges differ in width: a text is measured with the level it is drawn with, the
    // `aaLevel` of RenderText. Textout draws with level 1.

    /// Sum of the advances: trailing blanks count. At most PixelLimit.
    std::int32_t TextWidth(const QString& text, int aaLevel = 0) const;
    /// Ascent and descent of the font, whatever the text.
    std::int32_t TextHeight(const QString& text, int aaLevel = 0) const;
    TSize TextExtent(const QString& text, int aaLevel = 0) const {
        return {TextWidth(text, aaLevel), TextHeight(text, aaLevel)};
    }

    /// One line of text whose cell has its top left corner at (x, y), blended in `color`. With `aaLevel` 0 the edges
    /// are hard. No more of the cell is drawn than the bitmap's width and height, counted from its top left corner.
    void RenderText(std::int32_t x, std::int32_t y, const QString& text, int aaLevel, TColor32 color);
    /// Text in the font's colour, laid out in and clipped to `rect` by TTextFlags.
    void Textout(const TRect& rect, unsigned flags, const QString& text);

    // --- Qt's pictures -------------------------------------------------------------------------------------------

    /// A copy in Format_ARGB32; null if the bitmap is empty.
    /// @throws EOutOfMemory also if Qt has no picture of that size: rows end at 2^26 pixels there.
    QImage ToQImage() const;
    /// A bitmap with the picture's pixels; a null picture gives an empty bitmap.
    /// @throws EOutOfMemory
    static TBitmap32 FromQImage(const QImage& image);
    /// Copies the pixels to (0, 0) of a paint device, alpha ignored: `ratio` of them make one unit of the painter.
    void PaintTo(QPainter& painter, double ratio = 1.0) const;

private:
    std::size_t RowOffset(std::int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(GetWidth());
    }
    template<class Fill>
    void FillRows(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, Fill fillRow);
    void DrawStretched(const TWideRect& destination, const TRect& sourceRect, const TBitmap32& source, TDrawMode mode);
    TColor32 StippleColor(double counter) const;

    TPixelMemory FMemory;
    double FDeviceRatio = 1;
    TDrawMode FDrawMode = TDrawMode::dmOpaque;
    TCombineMode FCombineMode = TCombineMode::cmBlend;
    std::uint8_t FMasterAlpha = 255;
    TColor32 FOuterColor = 0;
    TColor32 FPenColor = clWhite32;
    TPoint FPen;
    TFloatPoint FPenF;
    std::vector<TColor32> FStipple;
    double FStippleCounter = 0;
    double FStippleStep = 1;
    TFont32 FFont;
};

} // namespace lmx
