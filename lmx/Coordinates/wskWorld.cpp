#include <lmx/Coordinates/wskWorld.h>

#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace lmx {

namespace {

constexpr extended LowestScale = 0.0001L;
constexpr extended HighestScale = 100000;

void CheckOrientation(TMapOrientation orientation) {
    if (orientation.X < 1)
        throw ENotImplemented(QStringLiteral("MapPointToPoint Orientation.X < 0"));
    if (orientation.Y >= 1)
        throw ENotImplemented(QStringLiteral("MapPointToPoint Orientation.Y > 0"));
}

// The order of the operations is part of the result: all of them round in extended.
TMapPoint MapToPixel(const IWorldSystem& system, extended scale, TPoint translation, const TMapPoint& point) {
    CheckOrientation(system.GetOrientation());
    const TMapArea& world = system.Area();
    const extended width = world.GetWidth();
    const extended height = world.GetHeight();
    return {width * scale * ((point.X - world.Left) / width) + translation.X,
            height * scale * ((world.Top - point.Y) / height) + translation.Y};
}

TMapPoint PixelToMap(const IWorldSystem& system, extended scale, TPoint translation, const TMapPoint& pixel) {
    CheckOrientation(system.GetOrientation());
    const TMapArea& world = system.Area();
    const extended width = world.GetWidth();
    const extended height = world.GetHeight();
    return {(pixel.X - translation.X) / scale / width * width + world.Left,
            world.Top - (pixel.Y - translation.Y) / scale / height * height};
}

std::int32_t Saturate(extended wholeNumber) {
    using limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp(wholeNumber, static_cast<extended>(limits::min()), static_cast<extended>(limits::max())));
}

// What must be added to the position of a pixel in the world to bring it to the middle of `viewLength` pixels.
std::int32_t TranslationToMiddle(std::int32_t viewLength, extended position) {
    if (std::isnan(position))
        throw EInvalidOp(QStringLiteral("Invalid floating point operation"));
    const std::int32_t middle = viewLength / 2;
    return Saturate(middle - std::nearbyint(position));
}

bool IsUnusableLength(extended length) {
    return SameValue(length, 0.0L) || !std::isfinite(length);
}

} // namespace

const IWorldSystem& TCurrentWorldSystem::Get() const {
    const IWorldSystem* system = FCurrent.load(std::memory_order_acquire);
    if (!system)
        throw EInvalidOperation(QStringLiteral("World system is nil"));
    return *system;
}

void TCurrentWorldSystem::Set(std::shared_ptr<IWorldSystem> system) {
    const auto known = std::find(FSystems.begin(), FSystems.end(), system);
    FIndex = static_cast<std::size_t>(known - FSystems.begin());
    if (known == FSystems.end())
        FSystems.push_back(std::move(system));
    FCurrent.store(FSystems[FIndex].get(), std::memory_order_release);
}

TWorld::TWorld(std::shared_ptr<IWorldSystem> worldSystem) {
    if (!worldSystem)
        throw EArgumentException(QStringLiteral("WorldSystem"));
    FWorldSystem = std::make_shared<TCurrentWorldSystem>(std::move(worldSystem));
}

TWorld::~TWorld() {
    for (TWorldViewport* viewport : FViewports)
        viewport->FWorld = nullptr;
}

void TWorld::SetWorldSystem(std::shared_ptr<IWorldSystem> worldSystem) {
    if (worldSystem == GetWorldSystem())
        return;
    FWorldSystem->Set(std::move(worldSystem));
    // Subscribers may make and destroy viewports, and a new one may stand where an old one stood.
    const std::vector<TBorrowed<TWorldViewport>> viewports(FViewports.begin(), FViewports.end());
    const TLifeWatch life = FLifetime.Watch();
    for (const TBorrowed<TWorldViewport>& viewport : viewports)
        if (!life.IsOver() && viewport)
            viewport->FOnChanged.Send(viewport.Get());
}

TWorldViewportLocal::TWorldViewportLocal(TWorld* world, extended scale, TPoint translation)
    : Translation(translation),
      Scale(scale),
      World(world) {
    if (!world)
        throw EArgumentException(QStringLiteral("World"));
    FWorldSystem = world->FWorldSystem;
}

TMapPoint TWorldViewportLocal::MapPointToPoint(const TMapPoint& point) const {
    return MapToPixel(FWorldSystem->Get(), Scale, Translation, point);
}

TMapPoint TWorldViewportLocal::PointToMapPoint(const TMapPoint& pixel) const {
    return PixelToMap(FWorldSystem->Get(), Scale, Translation, pixel);
}

TWorldViewport::TWorldViewport(TWorld* world) : FWorld(world), FMinScale(LowestScale), FMaxScale(HighestScale) {
    if (!world)
        throw EArgumentException(QStringLiteral("World"));
    FWorldSystem = world->FWorldSystem;
    world->FViewports.push_back(this);
}

TWorldViewport::~TWorldViewport() {
    if (FWorld)
        std::erase(FWorld->FViewports, this);
}

TMapPoint TWorldViewport::MapPointToPoint(const TMapPoint& point) const {
    return MapToPixel(FWorldSystem->Get(), FScale, FTranslation, point);
}

TMapPoint TWorldViewport::PointToMapPoint(const TMapPoint& pixel) const {
    return PixelToMap(FWorldSystem->Get(), FScale, FTranslation, pixel);
}

TMapArea TWorldViewport::GetRect(const TMapArea& area) const {
    const TMapPoint a = MapPointToPoint(area.GetTranslatedTopLeft());
    const TMapPoint b = MapPointToPoint(area.GetTranslatedBottomRight());
    return {std::min(a.X, b.X), std::min(a.Y, b.Y), std::max(a.X, b.X), std::max(a.Y, b.Y)};
}

TMapArea TWorldViewport::GetVisibleMapArea() const {
    const TMapPoint lastPixel(static_cast<extended>(FViewSize.cx) - 1, static_cast<extended>(FViewSize.cy) - 1);
    return {PointToMapPoint({0, 0}), PointToMapPoint(lastPixel)};
}

TMapSize TWorldViewport::GetWorldSize() const {
    const TMapArea& world = FWorldSystem->Get().Area();
    return {world.GetWidth() * FScale, world.GetHeight() * FScale};
}

TMapArea TWorldViewport::GetWorldRect() const {
    const TMapSize size = GetWorldSize();
    TMapArea rect;
    rect.SetWidth(size.Width * FScale);
    rect.SetHeight(size.Height * FScale);
    rect.Offset(FTranslation);
    return rect;
}

void TWorldViewport::SetScale(extended value) {
    if (value == FScale || std::isnan(value))
        return;
    const TMapPoint center = GetCenter();
    FScale = std::max(std::min(value, FMaxScale), LowestScale);
    const TBorrowed self(this);
    SetCenter(center);
    if (self)
        FOnChanged.Send(this);
}

void TWorldViewport::SetTranslation(TPoint translation) {
    if (translation == FTranslation)
        return;
    FTranslation = translation;
    FOnChanged.Send(this);
}

void TWorldViewport::SetViewSize(TSize size) {
    if (size == FViewSize)
        return;
    const TMapPoint center = GetCenter();
    FViewSize = size;
    SetCenter(center, false);
    const TBorrowed self(this);
    FOnChanged.Send(this);
    if (self)
        FOnViewSizeChanged.Send(this);
}

TMapPoint TWorldViewport::GetCenter() const {
    return PointToMapPoint(TMapPoint(TPoint(FViewSize.cx / 2, FViewSize.cy / 2)));
}

TPoint TWorldViewport::TranslationFor(const TMapPoint& center) const {
    const TMapArea world = GetWorldRect();
    const extended width = world.GetWidth();
    const extended height = world.GetHeight();
    TMapPoint position = MapPointToPoint(center);
    position.Offset(-static_cast<extended>(FTranslation.X), -static_cast<extended>(FTranslation.Y));
    if (width == 0 || height == 0)
        return FTranslation;
    return {TranslationToMiddle(FViewSize.cx, position.X / width * width),
            TranslationToMiddle(FViewSize.cy, position.Y / height * height)};
}

void TWorldViewport::SetCenter(const TMapPoint& center, bool notify) {
    const TPoint translation = TranslationFor(center);
    if (notify)
        SetTranslation(translation);
    else
        FTranslation = translation;
}

bool TWorldViewport::ZoomTo(const TMapArea& area) {
    const extended width = area.GetWidth();
    const extended height = area.GetHeight();
    if (IsUnusableLength(width) || IsUnusableLength(height))
        return false;
    const extended scaleX = FViewSize.cx / width;
    const extended scaleY = FViewSize.cy / height;
    const IWorldSystem& system = FWorldSystem->Get();
    TMapArea folded = system.ToWorldArea(area);
    if (area.Left < area.Right && folded.Left > folded.Right)
        folded.Right = system.Area().Right;
    const TBorrowed self(this);
    SetScale(std::min(scaleX, scaleY));
    if (self)
        SetCenter(folded.GetCenter());
    return true;
}

void TWorldViewport::StartPan() {
    FPanOrigin = FTranslation;
    FIsPanning = true;
}

bool TWorldViewport::PanBy(TPoint delta) {
    if (!FIsPanning)
        return false;
    SetTranslation(
        {SaturateToInt32(std::int64_t{FPanOrigin.X} + delta.X), SaturateToInt32(std::int64_t{FPanOrigin.Y} + delta.Y)});
    return true;
}

TWorldViewportLocal TWorldViewport::GetLocal() const {
    if (!FWorld)
        throw EArgumentException(QStringLiteral("World"));
    return {FWorld, FScale, FTranslation};
}

} // namespace lmx
