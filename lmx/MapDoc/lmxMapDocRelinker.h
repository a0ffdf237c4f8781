#pragma once

#include <lmx/MapDoc/lmxMapDocReader.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <functional>

namespace lmx {

/// Changes the paths of linked files in map documents; everything else in a document stays, layers of unknown types
/// too. A document is written beside the target and takes its place in one step: after a failure the target is as it
/// was. Source and target may be the same.
class LMX_EXPORT TMapDocRelinker {
public:
    const TMapDocLimits& GetLimits() const { return FLimits; }
    void SetLimits(const TMapDocLimits& limits) { FLimits = limits; }

    /// Gives each linked path to `newPath` and keeps what it gives.
    /// @throws what TMapDocReader::Read raises for what is no document with a manifest; EFileException if the target
    /// cannot be written.
    void Relink(const QString& source, const QString& target,
                const std::function<QString(const QString& path)>& newPath) const;

    /// Links every file by its name in another folder, whether or not it is there. A path without a name stays.
    void MoveTo(const QString& source, const QString& target, const QString& folder) const;

    /// Copies a document, under its name, and all files that it links, with those that belong to them (of the same name
    /// with another suffix), into a folder that is there, and links the copies. A linked file that is not there keeps
    /// its path. Files of one name from two folders get a number, "tas (2).rst", and so does one that is called as the
    /// document. Gives the path of the new document.
    /// @throws EFileException also if the folder has one of the files already; what has been copied by then stays.
    QString Pack(const QString& source, const QString& folder) const;

private:
    TMapDocLimits FLimits;
};

} // namespace lmx
