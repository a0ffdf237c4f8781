#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace lmx {

/// Something that lies in a file and can be chosen, such as a palette.
struct TResource {
    QString Name;     ///< what the user reads
    QString TypeName; ///< what it is, "IdrisiPalFileName" for a palette
    QString FileName;
    QString Folder; ///< groups of its source, joined by slashes; empty: none

    friend bool operator==(const TResource&, const TResource&) = default;
};

/// Where resources come from: a folder of files, a collection of a host's.
class LMX_EXPORT IResBrowserSource {
public:
    virtual ~IResBrowserSource() = default;
    virtual QString GetName() const = 0;
    virtual std::vector<TResource> GetResources() = 0;
    /// The colours that stand for one of them, from left to right; none if there is no such picture of it. Asked for
    /// what is seen only, and once. What it raises counts as none.
    virtual std::vector<TColor32> GetColors(const TResource& resource) = 0;
    /// What the user should know about the resources that were given last, such as files that were left out; a line
    /// each. Here: nothing.
    virtual QStringList GetNotes() const { return {}; }
};

/// Gives a source when it is needed.
class LMX_EXPORT IResBrowserSourceProvider {
public:
    virtual ~IResBrowserSourceProvider() = default;
    virtual std::shared_ptr<IResBrowserSource> GetSource() = 0; ///< nil: none at present
};

/// Lets the user browse sources, and choose one resource.
class LMX_EXPORT IResBrowser {
public:
    virtual ~IResBrowser() = default;

    virtual void AddSource(const std::shared_ptr<IResBrowserSource>& source) = 0; ///< nil does nothing
    /// Shows them and waits. True if the user has chosen one.
    virtual bool Execute(QWidget* parent = nullptr) = 0;
    virtual TResource GetResource() const = 0; ///< the chosen one; an empty one before
};

/// Makes the browsers that TResBrowserFactory hands out.
class LMX_EXPORT IResBrowserService {
public:
    virtual ~IResBrowserService() = default;
    virtual std::shared_ptr<IResBrowser> CreateResBrowser() = 0;
};

class LMX_EXPORT TResBrowserFactory {
public:
    static std::shared_ptr<IResBrowser> GetObject(); ///< a new one without sources

    /// Replaces the service and gives the previous one back; nil stands for the library's dialog.
    static std::shared_ptr<IResBrowserService> SetService(std::shared_ptr<IResBrowserService> service);
};

} // namespace lmx
