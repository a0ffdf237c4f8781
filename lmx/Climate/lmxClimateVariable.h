#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <span>

namespace lmx {

/// Quantities of climate data, in the order of TClimateVariableTypes::All.
enum class TClimateVariable {
    cvTas,
    cvTasmin,
    cvTasmax,
    cvTs,
    cvTa,
    cvPr,
    cvPrc,
    cvPrsn,
    cvPrw,
    cvEvspsbl,
    cvPsl,
    cvPs,
    cvHuss,
    cvHurs,
    cvHus,
    cvHur,
    cvSfcWind,
    cvSfcWindmax,
    cvUas,
    cvVas,
    cvUa,
    cvVa,
    cvWap,
    cvZg,
    cvTauu,
    cvTauv,
    cvHfls,
    cvHfss,
    cvRsds,
    cvRsus,
    cvRlds,
    cvRlus,
    cvRsdt,
    cvRsut,
    cvRlut,
    cvRsdscs,
    cvRsuscs,
    cvRldscs,
    cvRsutcs,
    cvRlutcs,
    cvClt,
    cvClwvi,
    cvClivi,
    cvMrso,
    cvMrsos,
    cvMrro,
    cvMrros,
    cvTsl,
    cvSnw,
    cvSnd,
    cvSnc,
    cvTos,
    cvSos,
    cvZos,
    cvThetao,
    cvSo,
    cvUo,
    cvVo,
    cvMlotst,
    cvSic,
    cvSiconc,
    cvSit,
    cvSithick,
    cvOrog,
    cvSftlf,
    cvAreacella
};

/// What is known of a climate variable.
struct TClimateVariableType {
    TClimateVariable Variable;
    QString ShortName;    ///< name in CMIP data files; upper and lower case count
    QString StandardName; ///< CF standard name
    QString Units;        ///< as in CMIP data files; "1" for ratios
    QString DisplayName;  ///< for legends and lists, in English
};

/// The table of climate variables.
///
/// Short names and units are those of the CMIP5 Standard Output and the CMIP6 Data Request (variables that differ
/// between the two, such as sea ice, stand in both forms); standard names are from the CF Standard Name Table of the
/// NetCDF Climate and Forecast Metadata Conventions (cfconventions.org).
class LMX_EXPORT TClimateVariableTypes {
public:
    /// All variables, in the order of the enumeration.
    static std::span<const TClimateVariableType> All();

    /// @throws EListError "Item not found" for a number that is no enumerator.
    static const TClimateVariableType& Get(TClimateVariable variable);

    /// The variable of a short name, or nil.
    static const TClimateVariableType* FromShortName(const QString& text);
};

} // namespace lmx
