#pragma once

#include <lmx/Graphics/lmxColor32.h>

#include <cstddef>
#include <cstdint>

// The kernels that all drawing goes through: one row of pixels at a time. Source and destination do not overlap.
// Each equals, bit for bit, the definition in lmxBlend.h applied to pixel after pixel.

namespace lmx::PixelRows {

void Fill(TColor32* to, std::size_t count, TColor32 color);
void Copy(TColor32* to, const TColor32* from, std::size_t count);

/// Copies the pixels that differ from `key`.
void CopyExcept(TColor32* to, const TColor32* from, std::size_t count, TColor32 key);

/// to[i] = from[columns[i]]. `next` is the row that the same columns are gathered from next; it is asked for meanwhile.
void Gather(TColor32* to, const TColor32* from, const std::int32_t* columns, std::size_t count, const TColor32* next);

/// to[i] = from[i] with its alpha times factor / 255
void ScaleAlphas(TColor32* to, const TColor32* from, std::size_t count, unsigned factor);

/// BlendColor and MergeColor of each source pixel over each destination pixel.
void Blend(TColor32* to, const TColor32* from, std::size_t count);
void Merge(TColor32* to, const TColor32* from, std::size_t count);

/// BlendColor and MergeColor of one colour over each pixel.
void BlendFill(TColor32* to, std::size_t count, TColor32 color);
void MergeFill(TColor32* to, std::size_t count, TColor32 color);

/// CombineColor of one colour over each pixel; `weight` is at most CombineOne.
void CombineFill(TColor32* to, std::size_t count, TColor32 color, std::uint32_t weight);
/// The same down two columns, `to` and the one to its right, by a weight of its own each: `stride` pixels from one row
/// to the next.
void CombineFillColumns(TColor32* to, std::size_t stride, std::size_t count, TColor32 color, std::uint32_t weight,
                        std::uint32_t nextWeight);

} // namespace lmx::PixelRows
