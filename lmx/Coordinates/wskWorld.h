#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxLifetime.h>

#include <atomic>
#include <cstddef>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

// From map coordinates to the pixels of a view and back.
// Map: the unit of the world system; y grows to the north.
// Pixel: device pixels of the view; (0, 0) is its top left corner and y grows downwards.

namespace lmx {

class TWorld;
class TWorldViewport;

/// A method that is told which viewport has changed.
using TWorldViewportEventList = TEventList<TWorldViewport*>;

/// The world system that a world has at the moment. Snapshots of viewports share it and read it on other threads, also
/// after the world is gone; only the world, on the main thread, sets it.
class LMX_EXPORT TCurrentWorldSystem {
public:
    explicit TCurrentWorldSystem(std::shared_ptr<IWorldSystem> system) { Set(std::move(system)); }

    /// @throws EInvalidOperation "World system is nil".
    const IWorldSystem& Get() const;
    const std::shared_ptr<IWorldSystem>& GetShared() const noexcept { return FSystems[FIndex]; } ///< main thread only
    void Set(std::shared_ptr<IWorldSystem> system);

private:
    // Every system that ever was current stays, and stays in place, since a reader may be in the middle of it.
    std::deque<std::shared_ptr<IWorldSystem>> FSystems;
    std::size_t FIndex = 0;
    std::atomic<const IWorldSystem*> FCurrent = nullptr;
};

/// A world system and the viewports that look at it. Outlives its viewports. Main thread only.
class LMX_EXPORT TWorld {
public:
    /// @throws EArgumentException "WorldSystem" if `worldSystem` is nil.
    explicit TWorld(std::shared_ptr<IWorldSystem> worldSystem);
    TWorld(const TWorld&) = delete;
    TWorld& operator=(const TWorld&) = delete;
    ~TWorld();

    const std::shared_ptr<IWorldSystem>& GetWorldSystem() const { return FWorldSystem->GetShared(); }
    /// Replaces the system and tells each viewport's subscribers. Scale and translation of the viewports stay as
    /// numbers, and so mean another place. Setting the present system does nothing. Nil is stored too: until another
    /// system is set, every conversion raises EInvalidOperation "World system is nil".
    void SetWorldSystem(std::shared_ptr<IWorldSystem> worldSystem);

    const std::vector<TWorldViewport*>& GetViewports() const { return FViewports; } ///< in order of creation

private:
    friend class TWorldViewport;
    friend class TWorldViewportLocal;

    std::vector<TWorldViewport*> FViewports;
    std::shared_ptr<TCurrentWorldSystem> FWorldSystem;
    TLifetime FLifetime;
};

/// Snapshot of a viewport's scale and translation, with which a worker converts while the viewport goes on changing.
/// Converts by the current system of the world, and by its last one when the world is gone.
class LMX_EXPORT TWorldViewportLocal {
public:
    TPoint Translation;
    extended Scale = 1;
    TWorld* World; ///< the world of the viewport; conversions do not touch it

    /// @throws EArgumentException "World" if `world` is nil.
    TWorldViewportLocal(TWorld* world, extended scale, TPoint translation);

    TMapPoint MapPointToPoint(const TMapPoint& point) const; ///< as TWorldViewport's
    TMapPoint PointToMapPoint(const TMapPoint& pixel) const; ///< as TWorldViewport's
    /// The system by which it converts; stays as long as this snapshot.
    /// @throws EInvalidOperation "World system is nil".
    const IWorldSystem& GetWorldSystem() const { return FWorldSystem->Get(); }

private:
    std::shared_ptr<const TCurrentWorldSystem> FWorldSystem;
};

/// Where a view stands over its world: a scale in pixels per map unit, the same for both axes, and a translation, the
/// pixel position of the world's top left corner. Nothing wraps here: beyond the edge of the world is empty space.
/// Registers with its world, which must outlive it. Main thread only.
///
/// Subscribers may see two notifications of one change, and may destroy the viewport.
class LMX_EXPORT TWorldViewport {
public:
    /// @throws EArgumentException "World" if `world` is nil.
    explicit TWorldViewport(TWorld* world);
    TWorldViewport(const TWorldViewport&) = delete;
    TWorldViewport& operator=(const TWorldViewport&) = delete;
    ~TWorldViewport();

    /// Map to pixel, the fraction kept.
    /// @throws ENotImplemented "MapPointToPoint Orientation.X < 0" or "MapPointToPoint Orientation.Y > 0" if the world
    /// system has such axes.
    TMapPoint MapPointToPoint(const TMapPoint& point) const;
    /// Pixel to map. @throws ENotImplemented with the messages of MapPointToPoint.
    TMapPoint PointToMapPoint(const TMapPoint& pixel) const;

    /// The pixels of an area, where its translation puts it: Left <= Right, Top <= Bottom.
    TMapArea GetRect(const TMapArea& area) const;
    /// The map between the first and the last pixel of the view.
    TMapArea GetVisibleMapArea() const;
    TMapSize GetWorldSize() const; ///< size of the world in pixels
    /// The world from its top left pixel. Its width and height carry the scale twice; SetCenter divides it out again.
    TMapArea GetWorldRect() const;

    extended GetScale() const { return FScale; } ///< pixels per map unit
    /// Changes the scale around the centre of the view; it is kept within 0.0001 and GetMaxScale. The lower bound does
    /// not depend on GetMinScale. Notifies, also when the bounds leave the scale as it was; a scale that is no number
    /// changes nothing.
    void SetScale(extended value);
    extended GetMinScale() const { return FMinScale; } ///< a note for hosts; nothing enforces it
    void SetMinScale(extended value) { FMinScale = value; }
    extended GetMaxScale() const { return FMaxScale; }

    TPoint GetTranslation() const { return FTranslation; }
    void SetTranslation(TPoint translation);

    TSize GetViewSize() const { return FViewSize; }
    /// Changes the size of the view; the map point at its centre stays there.
    void SetViewSize(TSize size);

    TMapPoint GetCenter() const; ///< map position of the pixel in the middle
    /// Moves `center` to the pixel in the middle, as near as whole pixels allow; a translation beyond 32 bits
    /// saturates. A world without width or height moves nothing. With `notify` false nobody is told.
    /// @throws EInvalidOp, with nothing changed, if the position is no number.
    void SetCenter(const TMapPoint& center, bool notify = true);

    /// Shows the whole of an area as large as it fits, centred. False, with nothing changed, if its width or height is
    /// 0. An area over the seam is centred on its part before the seam.
    bool ZoomTo(const TMapArea& area);

    void StartPan(); ///< remembers the translation
    /// Moves to `delta` from where StartPan found the map: the whole way since then, not a step. False if not panning.
    bool PanBy(TPoint delta);
    void EndPan() { FIsPanning = false; } ///< the translation stays
    bool GetIsPanning() const { return FIsPanning; }

    TWorld* GetWorld() const { return FWorld; } ///< nil once the world is gone
    const TLifetime& GetLifetime() const { return FLifetime; }
    /// A snapshot of the present scale and translation.
    /// @throws EArgumentException "World" once the world is gone.
    TWorldViewportLocal GetLocal() const;

    TWorldViewportEventList& GetOnChanged() { return FOnChanged; }
    TWorldViewportEventList& GetOnViewSizeChanged() { return FOnViewSizeChanged; }

private:
    friend class TWorld;

    TPoint TranslationFor(const TMapPoint& center) const;

    TPoint FPanOrigin;
    bool FIsPanning = false;
    TWorld* FWorld;
    std::shared_ptr<const TCurrentWorldSystem> FWorldSystem;
    TSize FViewSize;
    extended FScale = 1;
    TPoint FTranslation;
    extended FMinScale;
    extended FMaxScale;
    TWorldViewportEventList FOnChanged;
    TWorldViewportEventList FOnViewSizeChanged;
    TLifetime FLifetime;
};

} // namespace lmx
