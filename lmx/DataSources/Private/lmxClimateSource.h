#pragma once

#include <lmx/DataSources/Private/lmxClimateCells.h>
#include <lmx/DataSources/lmxClimateAttributes.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace lmx {

/// A dimension of an array. Arrays share it if the paths are equal.
struct TSourceDimension {
    QString Path; ///< with its groups: "/future/lat"
    quint64 Size = 0;

    friend bool operator==(const TSourceDimension&, const TSourceDimension&) = default;
};

/// What an array is, as far as it is known without its attributes.
struct TSourceArray {
    QString Path; ///< with its groups: "/future/tas"
    std::vector<TSourceDimension> Dimensions;
    std::vector<quint64> BlockSize; ///< cells that are stored as one, for each dimension; 0 or none: not in blocks
    bool IsNumeric = true;          ///< else texts or records
    TClimateCellType Type = TClimateCellType::ctFloat;
    QString Refusal;      ///< why its cells cannot be placed at all; empty if they can
    bool HasMask = false; ///< whether something besides the numbers says that cells are missing

    /// The product of the sizes; the largest number if it is larger.
    quint64 CellCount() const;
    std::size_t CellSize() const; ///< bytes
    /// Whether one of its blocks is larger than MostBlockBytes.
    bool HasHugeBlocks() const;
};

struct TSourceAttributes {
    TClimateAttributes Values;
    bool HasFloatingLimits = false; ///< as TClimateCellTraits
};

/// Cells of a part of an array, in its own type and in the order of its dimensions. Copies share the cells.
class TRawSlice {
public:
    TRawSlice() = default;
    /// Uninitialised.
    /// @throws EOutOfMemory.
    TRawSlice(TClimateCellType type, std::size_t count);

    std::size_t GetCount() const { return FCount; }
    void* GetBytes() { return FBytes.get(); }
    const std::byte* GetBytes() const { return FBytes.get(); }
    TRawClimateCells GetCells() const;
    /// Some of these cells in a row, which live as long as any that share them.
    TRawSlice Part(std::size_t first, std::size_t count) const;

private:
    std::shared_ptr<std::byte[]> FBytes;
    std::size_t FCount = 0;
    TClimateCellType FType = TClimateCellType::ctFloat;
};

std::size_t CellSizeOf(TClimateCellType type);

/// The part of an array to read: first cell and number of cells in each dimension.
struct TSourceWindow {
    std::vector<quint64> Starts;
    std::vector<std::size_t> Counts;

    friend bool operator==(const TSourceWindow&, const TSourceWindow&) = default;
};

/// What stands in an open file: arrays with dimensions and attributes, as NetCDF sees the world. Formats that know
/// bands only are told in the same way. Any thread may call; calls may wait for each other.
class IClimateSource {
public:
    virtual ~IClimateSource() = default;

    virtual const std::vector<TSourceArray>& GetArrays() const = 0;
    /// Whether the default fill values of NetCDF count.
    virtual bool IsNetCdf() const = 0;
    virtual TClimateAttributes ReadFileAttributes() = 0;
    virtual TSourceAttributes ReadAttributes(std::size_t array) = 0;
    /// @throws EClimateFile, with the array's name, if it cannot be read or its blocks are too large; EOutOfMemory.
    virtual TRawSlice Read(std::size_t array, const TSourceWindow& window) = 0;
    /// Of an array that has a mask: a byte for each cell of the window, 0 where it is missing. Here: none, for sources
    /// whose arrays have no masks.
    /// @throws as Read.
    virtual TRawSlice ReadMask(std::size_t array, const TSourceWindow& window);
};

inline constexpr quint64 MostBlockBytes = quint64(256) << 20; ///< what is stored as one is unpacked as one
/// Says that, and what to do.
QString HugeBlocksText();
inline constexpr std::size_t MostArrays = 10'000;
inline constexpr std::size_t MostAxisValues = 1'000'000;

} // namespace lmx
