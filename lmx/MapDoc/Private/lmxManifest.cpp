#include <lmx/MapDoc/Private/lmxManifest.h>

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/MapDoc/lmxMapDocResourcePersist.h>
#include <lmx/Runtime/Private/lmxMemory.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <vector>

namespace lmx {

namespace {

bool IsDeeperThan(TXmlNode root, int most) {
    std::vector<TXmlChildren::TIterator> path{root.GetChildren().begin()}; // the next element of each level
    while (!path.empty() && static_cast<int>(path.size()) <= most) {
        if (path.back() == TXmlChildren::TIterator()) {
            path.pop_back();
            continue;
        }
        const TXmlNode node = *path.back();
        ++path.back();
        path.push_back(node.GetChildren().begin());
    }
    return !path.empty();
}

} // namespace

TXmlDocument ReadManifest(const TMapDocResourcePersist& resources, std::uint64_t mostBytes, int mostDepth) {
    const QString& fileName = resources.GetFileName();
    return WithinMemory(fileName, [&] {
        TXmlDocument document = TXmlDocument::FromText(resources.ReadText({}, Manifest::EntryName, mostBytes));
        if (IsDeeperThan(document.GetRoot(), mostDepth))
            throw EFileFormatException(fileName, QStringLiteral("manifest is nested deeper than ") +
                                                     IntToStr(mostDepth) + QStringLiteral(" elements"));
        return document;
    });
}

std::shared_ptr<ILayerManager> RequireLayerManager(const TMapViewControl* control) {
    if (!control)
        throw EArgumentException(QStringLiteral("MapControl"));
    if (!control->GetLayerManager())
        throw EArgumentNilException(QStringLiteral("MapControl.LayerManager"));
    return control->GetLayerManager();
}

} // namespace lmx
