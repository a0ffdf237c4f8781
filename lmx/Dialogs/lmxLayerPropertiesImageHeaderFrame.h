#pragma once

#include <lmx/Dialogs/lmxOptionFrame.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>
#include <QWidget>

#include <cstdint>
#include <memory>

namespace lmx {

class TDrawnListView;
class TImageHeader;

/// A list of names and values, for reading.
class LMX_EXPORT TLayerPropertiesImageHeaderFrame : public QWidget {
public:
    explicit TLayerPropertiesImageHeaderFrame(QWidget* parent = nullptr);

    void AddValue(const QString& name, const QString& value); ///< of several lines, the list shows them as one
    void AddValue(const QString& name, std::int32_t value);
    void AddValue(const QString& name, float value); ///< four decimals

private:
    class TValueRows;

    std::shared_ptr<TValueRows> FRows;
    TDrawnListView* FValueList;
};

/// The page "Image header": what the documentation of an image says, as it was when the page was made.
class LMX_EXPORT TLayerPropertiesImageHeaderOptionFrame : public TLateOptionFrame {
public:
    explicit TLayerPropertiesImageHeaderOptionFrame(const TImageHeader& header);

protected:
    std::unique_ptr<QWidget> MakeFrame() const override;

private:
    std::shared_ptr<const TImageHeader> FHeader; ///< a copy
};

} // namespace lmx
