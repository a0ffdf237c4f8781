#pragma once

#include <lmx/Dialogs/lmxOptionFrame.h>
#include <lmx/Layers/lmxAttributeData.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxLifetime.h>

#include <QWidget>

#include <functional>
#include <memory>

QT_BEGIN_NAMESPACE
class QPushButton;
QT_END_NAMESPACE

namespace lmx {

class TDrawnListView;

/// A list of attributes that the user adds, edits and deletes. It works on a copy.
class LMX_EXPORT TLayerPropertiesAttributesFrame : public QWidget {
public:
    explicit TLayerPropertiesAttributesFrame(QWidget* parent = nullptr);

    const TAttributes& GetWorking() const { return FWorking; }
    void SetWorking(const TAttributes& attributes); ///< shows a copy
    void UpdateList();                              ///< lists the working copy anew

private:
    class TAttributeRows;
    using TNameTest = std::function<bool(const QString&)>;
    using TTake = std::function<void(const QString&, const TAttributeData&)>;

    QPushButton* AddButton(const QString& text, const QString& name, void (TLayerPropertiesAttributesFrame::*click)());
    void btnAddClick();
    void btnEditClick();
    void btnDeleteClick();
    void EnterAttribute(const QString& name, const TAttributeData& attribute, const TNameTest& isFree,
                        const TTake& take);
    QString GetSelectedName() const; ///< null if no row is selected
    void SelectName(const QString& name);
    void UpdateButtons();

    TAttributes FWorking;
    std::shared_ptr<TAttributeRows> FRows;
    TDrawnListView* FList;
    QPushButton* FAdd;
    QPushButton* FEdit;
    QPushButton* FDelete;
    TSubscription FSelectionSubscription;
    TSubscription FDoubleClickSubscription;
};

/// The page "Layer attributes".
class LMX_EXPORT TLayerPropertiesAttributesOptionFrame : public TLateOptionFrame {
public:
    /// Attributes that outlive the page.
    /// @throws EExArgumentNilException if `source` is nil.
    explicit TLayerPropertiesAttributesOptionFrame(TAttributes* source);
    /// Attributes of an owner that may go earlier; then there is nothing to apply to.
    TLayerPropertiesAttributesOptionFrame(TAttributes* source, const TLifeWatch& owner);

    /// Replaces the attributes by those of the page, which are those that there were when the page was made until
    /// somebody edits them. Nobody is told: attributes are not drawn.
    void Apply() override;

protected:
    std::unique_ptr<QWidget> MakeFrame() const override;

private:
    TAttributes* FSource;
    TAttributes FBefore;
    TLifetime FOwnLifetime;
    TLifeWatch FOwner;
};

} // namespace lmx
