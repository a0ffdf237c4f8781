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
class LMX_EXPORT TLayerPropertiesImageHeaderOptionFrame : public TOptionFrame {
public:
    explicit TLayerPropertiesImageHeaderOptionFrame(const TImageHeader& header);

    QWidget* GetFrame() const override { return FFrame; }

private:
    QPointer<TLayerPropertiesImageHeaderFrame> FFrame;
};

} // namespace lmx
