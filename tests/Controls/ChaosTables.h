#pragma once

#include <tests/Support/ChaosScene.h>

#include <functional>
#include <vector>

// The places where the library calls a host, and the deeds of a host there. A new control joins by a line in a table.

namespace lmx::tests {

using TAction = std::function<void()>;
using TArm = std::function<void(TChaosScene&, TAction)>;
using TUse = std::function<void(TChaosScene&)>;

/// Somewhere the library calls a host: how a host gets there, and what makes the library call.
struct TPlace {
    const char* Name;
    TArm Arm;
    TUse Trigger;
    bool IsBeforeViews = false; ///< armed before the views listen
};

/// What a host does there.
struct TDeed {
    const char* Name;
    TUse Do;
    bool EndsWidget = false; ///< or paints it: the platform must not stand in the middle of painting it
};

const std::vector<TPlace>& ChaosPlaces();
std::vector<TPlace> ChaosDialogPlaces(); ///< those of the properties and of the points, which are among them
std::vector<TPlace> ChaosListPlaces();   ///< those of lists, likewise
const std::vector<TDeed>& ChaosDeeds();

// What is used, if it is still there.

TUse View(std::function<void(TMapViewControl&)> use);
TUse Manager(std::function<void(ILayerManager&)> use);
TUse Clicking(TMapMode mode); ///< with the left button, in that mode

template<class Layer>
TUse With(TBorrowed<Layer> TChaosScene::*layer, std::function<void(Layer&)> use) {
    return [layer, use = std::move(use)](TChaosScene& s) {
        if (s.*layer)
            use(*(s.*layer).Get());
    };
}

template<class Layer>
TUse With(Layer* (TChaosScene::*layer)() const, std::function<void(Layer&)> use) {
    return [layer, use = std::move(use)](TChaosScene& s) {
        if (Layer* const found = (s.*layer)())
            use(*found);
    };
}

void RemoveLayer(TChaosScene& s);
void AddLayer(TChaosScene& s);
void MoveLayer(TChaosScene& s);
void AnotherManager(TChaosScene& s);
void NoManager(TChaosScene& s);
void ManagerAgain(TChaosScene& s);
void PaintPicture(TChaosScene& s);

} // namespace lmx::tests
