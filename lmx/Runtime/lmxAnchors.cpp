#include <lmx/Runtime/lmxAnchors.h>

#include <lmx/Runtime/Private/lmxNamedSet.h>

#include <array>

namespace lmx {

namespace {

constexpr std::array<QStringView, 4> Names = {u"akLeft", u"akTop", u"akRight", u"akBottom"};

} // namespace

QString AnchorsToString(TAnchors anchors) {
    return SetToString(anchors, Names);
}

TAnchors StringToAnchors(const QString& text) {
    return StringToSet<TAnchorKind>(text, Names, QStringLiteral("Invalid anchors text"));
}

} // namespace lmx
