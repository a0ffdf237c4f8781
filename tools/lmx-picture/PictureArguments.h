#pragma once

#include <lmx/Pictures/lmxMapPicture.h>

#include <QString>
#include <QStringList>

/// What a command line asks for.
struct TPictureArguments {
    QString Document;
    QString Picture;
    lmx::TMapPictureOptions Options;
    bool AllowsMissing = false;
    bool WantsHelp = false;
    bool WantsVersion = false;

    /// `arguments` with the program's name first. Everything wrong with them becomes a line of `problems`; then the
    /// rest means nothing.
    static TPictureArguments Parse(const QStringList& arguments, QStringList& problems);
};

/// How to call the program.
QString UsageText();
