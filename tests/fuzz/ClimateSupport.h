#pragma once

#include <lmx/DataSources/Private/lmxClimateCatalog.h>
#include <lmx/DataSources/Private/lmxClimateFileOpening.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QByteArray>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace lmx::tests {

/// Opens a climate file in memory, lists it and reads the first and last step of each variable. A refusal is a correct
/// answer. Large pictures are left out: a sparse file may claim one, and it would take the time of a thousand inputs.
inline void ReadClimateBytes(const std::uint8_t* bytes, std::size_t size) {
    constexpr std::int64_t mostCells = 1 << 16;
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    try {
        const TClimateCatalog catalog(OpenClimateBytes(input, QStringLiteral("input")), QStringLiteral("input"));
        for (std::size_t i = 0; i < catalog.GetInfos().size(); ++i) {
            const auto& plan = catalog.GetEntry(i).Plan;
            if (!plan || std::int64_t{plan->GetColumns()} * plan->GetRows() > mostCells)
                continue;
            for (const std::size_t step : {std::size_t(0), catalog.GetInfos()[i].TimeCount - 1}) {
                try {
                    catalog.Read({i, step});
                } catch (const Exception&) {
                }
            }
        }
    } catch (const EFileException&) {
    }
}

} // namespace lmx::tests
