#pragma once

#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Pictures/lmxMapPicture.h>

#include <QString>
#include <QStringList>

#include <limits>
#include <optional>

/// Which steps in time become pictures.
struct TPictureSteps {
    static constexpr int ToTheEnd = std::numeric_limits<int>::max();

    int First = 1; ///< counted from 1
    int Last = ToTheEnd;
    bool NamesByDate = false;
    std::optional<lmx::TValueRange> Range; ///< of the colours of all steps; that of the document if there is none
    bool FitsRange = false;                ///< whether the colours get the range of all steps
};

/// What a command line asks for.
struct TPictureArguments {
    QString Document;
    QString Picture;
    lmx::TMapPictureOptions Options;
    std::optional<TPictureSteps> Steps; ///< none for one picture
    bool AllowsMissing = false;
    bool WantsHelp = false;
    bool WantsVersion = false;

    /// `arguments` with the program's name first. Everything wrong with them becomes a line of `problems`; then the
    /// rest means nothing.
    static TPictureArguments Parse(const QStringList& arguments, QStringList& problems);
};

/// How to call the program.
QString UsageText();
